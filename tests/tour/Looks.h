#pragma once

#include "tour/Tour.h"

/// Shows the main windows once, each on all of the screen, to see what is cut off or can't be read
/// with a palette, a font and a scale factor.
class Looks : public Tour
{
public:
    using Tour::Tour;

    /// Gives the program a palette (light, dark, contrast) and its font a size in points. False for
    /// an unknown palette.
    static bool Take(const QString &palette, int points);

private:
    void Plan() override;
    QImage Cut(const QImage &screen) const override { return screen; }
    void WritePlan();
};
