#pragma once

#include <QString>

class bDAO;

/// The name of a live customer, trimmed; empty when there is none with this code.
QString CustomerName(bDAO &db, const QString &code);
