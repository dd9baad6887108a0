#include "platform/system/Fault.h"
