#pragma once

#include <QString>
#include <array>

class bDAO;

/// What the search screen decides, apart from its window.

/// A key of the sort key list, its button's index in each group, and the same for the date tabs.
inline constexpr std::array<const char *, 6> SortKeyNames
    = {"ACCHINCD", "ODRNO", "MFACTNO", "LIMDATE", "SHPDATE", "CUSTSECCD"};

using SortKeys = std::array<QString, 6>;

/// Gives `position` (0 to 5) the key; the position that held it gets the key that is given up, so
/// that every key keeps its one place.
SortKeys WithSortKey(SortKeys keys, int position, const QString &key);

/// The keys as they are, or the default order when they are not the six keys once each.
SortKeys ValidSortKeys(const SortKeys &keys);

/// The name of the one live product with this code; nothing found, or several, gives False.
bool FindProductName(bDAO &db, const QString &code, QString &name);

/// True for an empty text or a date in typed or shown form that the calendar has.
bool IsDateBoxValid(const QString &text);
