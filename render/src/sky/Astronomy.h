// Positions of sun, moon and stars.
#pragma once

#include "engine/math/Transform.h"

/// The sky over a position. Directions are east, north, up, of length 1, without refraction.
struct Heavens {
    dvec3 sun;
    dvec3 moon;               ///< seen from the position, not from the globe's centre
    double moon_lit = 0.0;    ///< illuminated share of the moon's disc, 0..1
    double moon_phase = 0.0;  ///< angle between sun and observer as seen from the moon, degrees: 0 at full moon
    /// rotation from equatorial to east, north, up; X to right ascension 0, Z to the north pole
    dmat3 stars;
};

/// Julian date of a calendar day (Gregorian) at 0 h universal time.
double julianDay(int year, int month, int day);
/// Julian date, universal time, of an apparent solar time (sundial) at a longitude (degrees): at 12 hours the sun
/// culminates.
double julianDateOfSolarTime(int year, int month, int day, double solar_hours, double longitude);
/// Accuracy: sun 0.02 degrees, moon 0.4 degrees between 1950 and 2050. Longitude and latitude in degrees.
Heavens computeHeavens(double julian_date, double longitude, double latitude);
