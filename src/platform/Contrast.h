#pragma once

#include <QColor>

/// What a text needs to be read: a contrast of at least this to its background, by the rule of the
/// Web Content Accessibility Guidelines (level AA).
inline constexpr double LeastContrast = 4.5;

/// The contrast of two opaque colours, from 1 (the same) to 21 (black on white).
double ContrastRatio(const QColor &one, const QColor &other);

/// The text's colour, made lighter or darker as little as it takes to be read on that background.
/// One that can be read comes back as it is.
QColor Readable(const QColor &text, const QColor &background);
