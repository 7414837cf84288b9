#pragma once

#include <QString>
#include <functional>
#include <vector>

class QPagedPaintDevice;

/// A table on paper: a title and what it is about, the headings on every page, rows of one height,
/// page numbers.
struct PaperTable
{
    struct Column
    {
        QString heading; ///< its lines separated by LF
        double share;    ///< of the page's width, beside those of the others
        bool isNumber = false;
    };

    QString title;
    QString about;  ///< whose list it is
    QString beside; ///< when it was made
    std::vector<Column> columns;
    int linesPerRow = 1;
    int rows = 0;
    std::function<QString(int row, int column)> text; ///< from 0; lines separated by LF

    /// How many pages it takes on a device whose page is set up.
    int PageCount(const QPagedPaintDevice &device) const;
};

/// Prints the table. `step` is called for each row and stops the work with False. False then, and
/// when the device can't be printed on.
bool PrintTable(const PaperTable &table, QPagedPaintDevice &device,
                const std::function<bool()> &step);
