#include "platform/Version.h"

#include "VersionText.h"

QString ProgramVersion()
{
    return QStringLiteral(VERSION_TEXT);
}
