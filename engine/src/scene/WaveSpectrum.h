// The spectrum of a sea: heights of waves by length and direction for a wind.
#pragma once

/// Wind speed of a Beaufort number, m/s 10 m above the sea: 0.836 B^1.5 (WMO, Commission for Maritime Meteorology,
/// Marine Science Affairs Report 3, 1970).
double getBeaufortSpeed(double beaufort);
/// The inverse: the Beaufort number, with fraction, of a wind speed in m/s; 0 for a negative speed.
double getBeaufortNumber(double speed);

/// The directional spectrum of a sea in a steady wind.
///
/// Heights are the probable wave heights of the Beaufort scale (WMO-No. 306, Manual on Codes, Beaufort wind scale, open
/// sea), linear in the Beaufort number between its steps and constant above 12. The spectrum is that of Pierson and
/// Moskowitz (1964) in its form for a given significant height (ITTC 1978): peak period 5.00 sqrt(Hs) s. Directions are
/// spread around the wind's as sech^2 (Donelan, Hamilton and Hui 1985; Banner 1990).
class WaveSpectrum {
public:
    static constexpr double GRAVITY = 9.80665;  ///< m/s^2, standard

    /// Wind speed, m/s, and the direction it blows to, east and north (any length; zero counts as east).
    WaveSpectrum(double speed, double to_east, double to_north);

    double getHeight() const { return m_height; }  ///< significant height Hs, metres: four standard deviations
    double getPeak() const { return m_peak; }      ///< angular frequency of the peak, rad/s; infinite when flat

    /// Variance of the surface per area of the plane of wave numbers, m^2 / (rad/m)^2, for waves that travel toward
    /// (east, north), rad/m. 0 for the zero wave number.
    float getDensity(float east, float north) const;

private:
    double m_height, m_peak;
    float m_peak_number;  ///< rad/m
    float m_to_east, m_to_north;
};
