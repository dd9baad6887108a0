#pragma once
// The numbers of the geodesy module. Pi is the decimal 3.14159265358979 cut to
// 15 significant digits (bits 400921FB54442D11), not the nearest double to pi:
// every angle conversion and every stored result depends on it, so no library
// constant may stand in for it.

namespace tess::MyGeometricOperations {

inline constexpr double kPi = 3.14159265358979;    //!< radians in a half turn, as the module cuts it
inline constexpr double kTwoPi = 6.28318530717958; //!< radians in a turn, cut the same way

inline constexpr double kDegreesPerQuarterTurn = 90.0;
inline constexpr double kDegreesPerHalfTurn = 180.0;
inline constexpr double kDegreesPerTurn = 360.0;

//! Result of a bearing or centroid that has no value.
inline constexpr double kNoValue = -9999.0;

//! Convergence tolerance of the Vincenty loops (radians) and equality tolerance of
//! coordinates in the triangle tests (degrees).
inline constexpr double kTolerance = 1e-12;
//! Passes of a Vincenty loop before it gives up silently with the values it has.
inline constexpr int kVincentyPassLimit = 40;

//! WGS 1984 of the routines without spheroid arguments. The minor axis is stored, not
//! derived from the flattening: the two disagree in the 13th digit, and the inverse
//! problem uses both.
inline constexpr double kWgs84SemiMajor = 6378137.0;         //!< metres
inline constexpr double kWgs84SemiMinor = 6356752.31424518;  //!< metres
inline constexpr double kWgs84InverseFlattening = 298.257223563;

} // namespace tess::MyGeometricOperations
