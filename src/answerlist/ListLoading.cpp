#include "answerlist/ListLoading.h"

#include "answerlist/AnswerList.h"
#include "answerlist/ListQuery.h"
#include "util/VbText.h"

namespace {

constexpr int DefectiveGoods = 15;
constexpr int Shipped = 3;
constexpr int AnswerOutput = 3;

/// Reads the rows of the list's query. Columns are found by name once.
class LineReader
{
public:
    explicit LineReader(const Recordset &rows)
        : m_rows(rows)
    {
        for (size_t at = 0; at < std::size(Names); ++at)
            m_fields[at] = rows.FieldIndex(QString(Names[at]));
    }

    bool IsDefective() const { return Whole(DenKBN) == DefectiveGoods; }

    ListLine Read() const
    {
        const Decimal stored = Quantity(AnsVal);
        const bool isUnanswered = stored.IsZero();
        const int shpSts = Whole(ShpSts);
        ListLine line;
        line.isEdi = Whole(EDIKBN) == 1;
        line.hasOtherDate = Text(AnsMark) == "2";
        line.orderNo = Text(OdrNo);
        line.productCode = Text(HinCD);
        line.productName = Text(AccHinName);
        line.material = Text(F019);
        line.ordered = Quantity(AccVal);
        line.open = Quantity(ZanVal);
        line.instructed = Quantity(IndVal);
        line.shipped = Quantity(ShpVal);
        line.answered = shpSts < Shipped && isUnanswered ? line.instructed : stored;
        line.loaded = shpSts != Shipped && isUnanswered ? line.open : stored;
        line.answeredDate = Text(AnsLimDate);
        line.specifiedDate = Text(LimDate);
        line.deliveryNo = Trim(Text(PayNo));
        line.isAnswered = Whole(AnsLimUmu) == AnswerOutput;
        line.isShipped = shpSts == Shipped;
        line.contractKind = Text(ContractKBN);
        line.sectionCode = Text(CustSecCD);
        line.accNo = Text(AccNo);
        line.accSubNo = Text(AccSubNo);
        line.shpSubNo = Text(ShpSubNo);
        line.linKBN = Trim(Text(LinKBN));
        line.outputPath = Whole(NokiInfKBN) == 1 ? Trim(Text(NokiInfPath)) : QString();
        return line;
    }

private:
    enum Field {
        AccNo,
        ShpSubNo,
        AccSubNo,
        AnsMark,
        OdrNo,
        AccVal,
        LimDate,
        PayNo,
        IndVal,
        AnsLimDate,
        AnsVal,
        ShpSts,
        ShpVal,
        AnsLimUmu,
        DenKBN,
        EDIKBN,
        ZanVal,
        ContractKBN,
        HinCD,
        LinKBN,
        NokiInfPath,
        NokiInfKBN,
        AccHinName,
        F019,
        CustSecCD,
    };
    static constexpr const char *Names[] = {
        "AccNo",      "ShpSubNo",   "AccSubNo",   "AnsMark",     "OdrNo",  "AccVal", "LimDate",
        "PayNo",      "IndVal",     "AnsLimDate", "AnsVal",      "ShpSts", "ShpVal", "AnsLimUmu",
        "DenKBN",     "EDIKBN",     "ZanVal",     "ContractKBN", "HinCD",  "LinKBN", "NokiInfPath",
        "NokiInfKBN", "AccHinName", "F019",       "CustSecCD",
    };

    QString Text(Field field) const { return RTrim(m_rows.Text(m_fields[field])); }
    int Whole(Field field) const { return int(m_rows.Number(m_fields[field])); }
    Decimal Quantity(Field field) const
    {
        return Decimal::FromDouble(m_rows.Number(m_fields[field]));
    }

    const Recordset &m_rows;
    int m_fields[std::size(Names)];
};

} // namespace

LoadedList LoadList(bDAO &db, const SearchConditions &conditions, AnswerList &list,
                    const ShowStatusText &showStatus)
{
    LoadedList loaded;
    list.Clear();
    LongWork search(showStatus, LoadingText);
    db.SetProgress([&] { return search.Step(); });
    const auto rows = db.OpenRS(BuildListSql(conditions));
    db.SetProgress({});
    loaded.isRead = rows != nullptr;
    loaded.isStopped = search.IsStopped();
    if (db.IsEOF(rows.get()))
        return loaded;
    loaded.lineCount = int(db.GetRecordCount(rows.get()));
    const LineReader reader(*rows);
    LongWork fill(showStatus, LoadingText, loaded.lineCount);
    while (!db.IsEOF(rows.get())) {
        if (!fill.Step()) {
            list.Clear();
            loaded.isStopped = true;
            loaded.lineCount = 0;
            return loaded;
        }
        const bool isDefective = reader.IsDefective();
        list.Append(reader.Read(), isDefective);
        loaded.hasDefectiveLines |= isDefective;
        db.MoveNext(*rows);
    }
    db.CloseRS(rows.get());
    return loaded;
}

QString DateBasisName(const QString &basis)
{
    static constexpr struct
    {
        const char *basis;
        const char *name;
    } names[] = {{"SHPDATE", "出荷（予定）"}, {"LIMDATE", "指定納期"}, {"ACCDATE", "受注日"}};
    for (const auto &entry : names)
        if (basis == QLatin1String(entry.basis))
            return entry.name;
    return {};
}
