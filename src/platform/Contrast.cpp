#include "platform/Contrast.h"

#include <algorithm>
#include <cmath>

namespace {

/// How bright a colour is to the eye, from 0 to 1.
double Luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
           + 0.0722 * linear(color.blueF());
}

} // namespace

double ContrastRatio(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor Readable(const QColor &text, const QColor &background)
{
    if (ContrastRatio(text, background) >= LeastContrast)
        return text;
    // One of black and white can be read on any background.
    const bool isLighter
        = ContrastRatio(Qt::white, background) > ContrastRatio(Qt::black, background);
    constexpr int Steps = 255;
    const QColor hsl = text.toHsl();
    for (int lightness = hsl.lightness(); lightness >= 0 && lightness <= Steps;
         lightness += isLighter ? 1 : -1) {
        const QColor tried
            = QColor::fromHsl(std::max(hsl.hslHue(), 0), hsl.hslSaturation(), lightness);
        if (ContrastRatio(tried, background) >= LeastContrast)
            return tried;
    }
    return isLighter ? Qt::white : Qt::black;
}
