#pragma once

#include <QByteArrayView>

struct S_MdbTableDef;

/// Whether the numbers by which a row of the original engine's format is taken apart fit each other
/// and the table: its texts stand one after the other between the values of fixed length and the
/// table of their places, and a null one has no bytes.
bool IsSoundRow(const S_MdbTableDef &table, QByteArrayView row);
