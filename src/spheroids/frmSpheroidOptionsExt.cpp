#include "spheroids/frmSpheroidOptionsExt.h"

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "support/frmReport_modal.h"

namespace tess {
namespace {

constexpr ControlSpec kExtraControls[] = {
    {"lblCentricVsGraphic", ControlKind::Label, "Latitude Definition:", 12, 330, 300, 18},
    {"optGraphic", ControlKind::OptionButton, "Data are in Planeto [Geo] Graphic Coordinates", 12, 350, 330, 20},
    {"optCentric", ControlKind::OptionButton, "Data are in Planeto [Geo] Centric Coordinates", 12, 372, 330, 20},
    {"cmdHelp", ControlKind::CommandButton, "Help", 350, 358, 96, 28},
};

constexpr double kExtendedHeight = 440.0; // pixels

} // namespace

std::string CentricVsGraphicHelp() {
    return std::string(R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})") + "\r\n" +
           R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\f0\fs17 )" +
           R"(The terms Planetocentric and Planetographic name two methods of defining latitude on a spheroid.\par)" +
           "\r\n" +
           R"(\par A latitude measured as the angle between the equator and the normal to the spheroid's surface gives Geographic (or Geodetic) coordinates.\par)" +
           "\r\n" +
           R"(\par A latitude measured as the angle between the equator and the line from the centre of the spheroid gives Geocentric coordinates.\par)" +
           "\r\n" +
           R"(\par On other bodies the prefix Planeto takes the place of Geo.  Most Earth datums are Planetographic, while most extra-terrestrial datums are Planetocentric.\par)" +
           "\r\n" +
           R"(\par Longitudes do not differ between the two.  The difference between the latitudes grows with the flattening of the spheroid, and vanishes on a true sphere.\par)" +
           "\r\n" + R"(\par Please refer to the manual for illustrations of these concepts.\par)" + "\r\n}";
}

frmSpheroidOptionsExt::frmSpheroidOptionsExt()
    : frmSpheroidOptions("frmSpheroidOptionsExt", " Advanced Geometry Parameters:") {
    Height = kExtendedHeight;
    AddControls(kExtraControls);
    Ctl("optGraphic").Value = 1;
    Ctl("optCentric").Value = 0;
    // Option buttons of one frame exclude each other, as the hosts' do.
    On("optGraphic", FormEvent::Click, [this] {
        Ctl("optGraphic").Value = 1;
        Ctl("optCentric").Value = 0;
    });
    On("optCentric", FormEvent::Click, [this] {
        Ctl("optCentric").Value = 1;
        Ctl("optGraphic").Value = 0;
    });
    On("cmdHelp", FormEvent::Click, [this] { cmdHelp_Click(); });
}

void frmSpheroidOptionsExt::WriteExtra(clsExtension& extension) {
    extension.CurrentSpheroidGeocentric(Ctl("optCentric").Value == 1);
}

void frmSpheroidOptionsExt::cmdHelp_Click() {
    TrappedVoid("cmdHelp_Click ", [&] {
        frmReport_modal report;
        report.Caption = "Planetocentric vs. Planetographic:";
        report.Ctl("txtReport").Text = CentricVsGraphicHelp();
        report.ShowModal();
    });
}

} // namespace tess
