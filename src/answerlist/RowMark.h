#pragma once

#include "lines/Line.h"

#include <QIcon>

/// What has become of a line since the list was loaded, as the heading of its row shows it.
enum class RowMark { None, Registered, Changed, Copied, Wrong };

RowMark MarkOf(const Line &line);

/// The operator's words for it: with the error that the checks found; empty for none.
QString MarkText(const Line &line);

/// The mark as an icon, in the colour of the texts around it; an empty one for none, which takes
/// the same room.
QIcon MarkIcon(RowMark mark);
