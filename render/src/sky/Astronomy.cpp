// Low-precision formulas of the Astronomical Almanac (sections C and D): sun, moon and sidereal time. Evaluated when
// the time of day, the date or the eye's position has changed.
#include "sky/Astronomy.h"

#include <algorithm>
#include <cmath>

#include "engine/math/jMath.h"

namespace {

constexpr double J2000 = 2451545.0;
constexpr double DAYS_PER_CENTURY = 36525.0;
constexpr double SUN_DISTANCE = 23455.0;  // in globe radii

double sinDeg(double degrees) {
    return std::sin(degrees * jMath::DEG2RAD);
}
double cosDeg(double degrees) {
    return std::cos(degrees * jMath::DEG2RAD);
}

double obliquity(double julian_date) {
    return 23.439 - 0.0000004 * (julian_date - J2000);
}

double meanSunLongitude(double julian_date) {
    return 280.460 + 0.9856474 * (julian_date - J2000);
}

double sunLongitude(double julian_date) {
    const double anomaly = 357.528 + 0.9856003 * (julian_date - J2000);
    return meanSunLongitude(julian_date) + 1.915 * sinDeg(anomaly) + 0.020 * sinDeg(2.0 * anomaly);
}

/// Direction in the equatorial frame.
dvec3 fromEcliptic(double longitude, double latitude, double tilt) {
    const dvec3 e(cosDeg(latitude) * cosDeg(longitude), cosDeg(latitude) * sinDeg(longitude), sinDeg(latitude));
    return {e.x, e.y * cosDeg(tilt) - e.z * sinDeg(tilt), e.y * sinDeg(tilt) + e.z * cosDeg(tilt)};
}

dvec3 sunPlace(double julian_date) {
    return fromEcliptic(sunLongitude(julian_date), 0.0, obliquity(julian_date)) * SUN_DISTANCE;
}

/// Position in globe radii from the globe's centre.
dvec3 moonPlace(double julian_date) {
    const double t = (julian_date - J2000) / DAYS_PER_CENTURY;
    const double longitude = 218.32 + 481267.881 * t + 6.29 * sinDeg(135.0 + 477198.87 * t) -
                             1.27 * sinDeg(259.3 - 413335.36 * t) + 0.66 * sinDeg(235.7 + 890534.22 * t) +
                             0.21 * sinDeg(269.9 + 954397.74 * t) - 0.19 * sinDeg(357.5 + 35999.05 * t) -
                             0.11 * sinDeg(186.5 + 966404.03 * t);
    const double latitude = 5.13 * sinDeg(93.3 + 483202.02 * t) + 0.28 * sinDeg(228.2 + 960400.89 * t) -
                            0.28 * sinDeg(318.3 + 6003.15 * t) - 0.17 * sinDeg(217.6 - 407332.21 * t);
    const double parallax = 0.9508 + 0.0518 * cosDeg(135.0 + 477198.87 * t) + 0.0095 * cosDeg(259.3 - 413335.36 * t) +
                            0.0078 * cosDeg(235.7 + 890534.22 * t) + 0.0028 * cosDeg(269.9 + 954397.74 * t);
    return fromEcliptic(longitude, latitude, obliquity(julian_date)) / sinDeg(parallax);
}

/// Apparent minus mean solar time, in days.
double equationOfTime(double julian_date) {
    const dvec3 sun = sunPlace(julian_date);
    const double ascension = std::atan2(sun.y, sun.x) * jMath::RAD2DEG;
    return std::remainder(meanSunLongitude(julian_date) - ascension, 360.0) / 360.0;
}

dmat3 starFrame(double julian_date, double longitude, double latitude) {
    const double sidereal = 280.46062 + 360.98564737 * (julian_date - J2000) + longitude;
    const double s = sinDeg(sidereal), c = cosDeg(sidereal), sin_lat = sinDeg(latitude), cos_lat = cosDeg(latitude);
    return {dvec3(-s, -c * sin_lat, c * cos_lat), dvec3(c, -s * sin_lat, s * cos_lat), dvec3(0.0, cos_lat, sin_lat)};
}

}  // namespace

double julianDay(int year, int month, int day) {
    // Meeus, Astronomical Algorithms, chapter 7.
    if (month <= 2) --year, month += 12;
    const int century = static_cast<int>(std::floor(year / 100.0));
    const int leap = 2 - century + static_cast<int>(std::floor(century / 4.0));
    return std::floor(365.25 * (year + 4716)) + std::floor(30.6001 * (month + 1)) + day + leap - 1524.5;
}

double julianDateOfSolarTime(int year, int month, int day, double solar_hours, double longitude) {
    const double mean = julianDay(year, month, day) + solar_hours / 24.0 - longitude / 360.0;
    return mean - equationOfTime(mean);
}

Heavens computeHeavens(double julian_date, double longitude, double latitude) {
    Heavens heavens;
    heavens.stars = starFrame(julian_date, longitude, latitude);
    const dvec3 sun = sunPlace(julian_date), moon = moonPlace(julian_date);
    heavens.sun = normalize(heavens.stars * sun);
    // The observer is one globe radius above the centre.
    heavens.moon = normalize(heavens.stars * moon - dvec3(0.0, 0.0, 1.0));
    const double cos_phase = std::clamp(dot(normalize(sun - moon), normalize(-moon)), -1.0, 1.0);
    heavens.moon_phase = std::acos(cos_phase) * jMath::RAD2DEG;
    heavens.moon_lit = 0.5 + 0.5 * cos_phase;
    return heavens;
}
