#include "sources/film/FilmStepper.h"

#include <algorithm>
#include <cmath>

void FilmStepper::faster()
{
    m_speedIndex = std::min(m_speedIndex + 1, static_cast<int>(speeds.size()) - 1);
}

void FilmStepper::slower()
{
    m_speedIndex = std::max(m_speedIndex - 1, 0);
}

void FilmStepper::setPosition(double seconds)
{
    m_position = truncated(seconds, 1000);
}

double FilmStepper::advance(long long elapsedMs)
{
    const int speed = speeds[static_cast<std::size_t>(m_speedIndex)];
    const double place = m_position + speed * (static_cast<double>(elapsedMs) / 1000.0);
    setPosition(place);
    return place;
}

bool FilmStepper::beyondEnds(double seconds, double duration)
{
    return !(seconds >= 0 && seconds < duration);
}

int FilmStepper::percent(double seconds, double duration)
{
    if (!std::isfinite(duration) || duration <= 0 || std::isnan(seconds))
        return 0;
    return static_cast<int>(std::clamp(seconds / duration * 100.0, 0.0, 100.0));
}

double FilmStepper::secondsAt(int percent, double duration)
{
    return truncated(percent / 100.0 * duration, 1);
}

double FilmStepper::truncated(double seconds, int timeScale)
{
    if (!std::isfinite(seconds))
        return 0;
    return std::trunc(seconds * timeScale) / timeScale;
}
