#pragma once

#include <QStringList>

class QStatusBar;

/// Gives a status bar its panels: the first takes the free width, the others are as wide as their
/// texts. Each panel is a label whose object name is its key.
void AddStatusPanels(QStatusBar &bar, const QStringList &keys);

/// Shows a text in a panel of the status bar and paints it at once, even within a long run.
void SetPanelText(QStatusBar &bar, const QString &key, const QString &text);

/// The same in the colours of a warning, which a screen reader reads at once. The next text in the
/// panel ends it.
void SetPanelWarning(QStatusBar &bar, const QString &key, const QString &text);
