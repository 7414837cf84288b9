#pragma once

#include "tldb/Commands.h"

#include <QString>
#include <QStringList>

/// One run of the tool in this process: what it returned and wrote.
struct ToolRun
{
    explicit ToolRun(const QStringList &arguments)
    {
        QTextStream outStream(&out);
        QTextStream errStream(&err);
        exitCode = RunTool(arguments, outStream, errStream);
    }

    QStringList OutLines() const { return out.split('\n', Qt::SkipEmptyParts); }

    int exitCode = -1;
    QString out;
    QString err;
};
