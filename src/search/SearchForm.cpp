#include "search/SearchForm.h"

#include "data/bDAO.h"
#include "util/VbText.h"
#include "util/bDate.h"

#include <algorithm>

SortKeys WithSortKey(SortKeys keys, int position, const QString &key)
{
    const auto holder = std::find(keys.begin(), keys.end(), key);
    if (holder != keys.end())
        std::swap(*holder, keys[size_t(position)]);
    return keys;
}

SortKeys ValidSortKeys(const SortKeys &keys)
{
    SortKeys defaults;
    std::copy(SortKeyNames.begin(), SortKeyNames.end(), defaults.begin());
    return std::is_permutation(keys.begin(), keys.end(), defaults.begin()) ? keys : defaults;
}

bool FindProductName(bDAO &db, const QString &code, QString &name)
{
    const auto rows
        = db.OpenRS(QString("Select HinName From TLMT0020 ") + "Where AccHinCD = '" + SqlText(code)
                    + "'" + " And  DpoFlg = 0" + " ORDER BY TLMT0020.HinName");
    if (db.GetRecordCount(rows.get()) != 1)
        return false;
    name = db.NullToTrim(*rows, u"HinName");
    return true;
}

bool IsDateBoxValid(const QString &text)
{
    return Trim(text).isEmpty() || IsTypedOrShownDate(text);
}
