#pragma once
// The argument lists that the wrap and planetary dialogs leave in the extension
// for their runs, and the output description inside them.

#include <cstdint>

namespace tess {

//! frmBoundaryWrapReturn: what WrapToBoundaries reads.
namespace wrap_argument {
inline constexpr std::int32_t Layer = 0;  //!< IFeatureLayer
inline constexpr std::int32_t West = 1;   //!< double degrees
inline constexpr std::int32_t North = 2;
inline constexpr std::int32_t East = 3;
inline constexpr std::int32_t South = 4;
inline constexpr std::int32_t Option = 5; //!< wrap_option
inline constexpr std::int32_t Output = 6; //!< output description (output_description)
inline constexpr std::int32_t Shift = 7;  //!< longitudinal shift, double degrees
} // namespace wrap_argument

//! frmGeoCentricReturn: what the two latitude conversions read.
namespace geocentric_argument {
inline constexpr std::int32_t Layer = 0;        //!< IFeatureLayer
inline constexpr std::int32_t SpheroidName = 1; //!< string
inline constexpr std::int32_t SemiMajor = 2;    //!< double metres
inline constexpr std::int32_t SemiMinor = 3;    //!< double metres
inline constexpr std::int32_t Shift = 4;        //!< longitudinal shift, double degrees
inline constexpr std::int32_t WrapOption = 5;   //!< wrap_option (Custom means no wrap here)
inline constexpr std::int32_t Output = 6;       //!< output description (output_description)
} // namespace geocentric_argument

//! The ranges of LongitudeWrapOption. The wrap dialog reads 0 as a custom box, the planetary
//! dialog as no wrap at all.
namespace wrap_option {
inline constexpr std::int32_t Custom = 0;
inline constexpr std::int32_t None = 0;
inline constexpr std::int32_t Range180 = 1; //!< -180..180 by -90..90
inline constexpr std::int32_t Range360 = 2; //!< 0..360 by -90..90
} // namespace wrap_option

//! The output description: an IVariantArray of what CreateGeneralFeatureClass is given.
namespace output_description {
inline constexpr std::int32_t Directory = 0;        //!< folder or geodatabase
inline constexpr std::int32_t Name = 1;             //!< the new class
inline constexpr std::int32_t Kind = 2;             //!< output_kind
inline constexpr std::int32_t Fields = 3;           //!< IVariantArray of IField clones, in order
inline constexpr std::int32_t FieldMap = 4;         //!< IVariantArray of IStringArray (input name, output name)
inline constexpr std::int32_t IsFeatureDataset = 5; //!< bool
inline constexpr std::int32_t DatasetName = 6;      //!< string
} // namespace output_description

} // namespace tess
