#pragma once

#include "tour/Tour.h"

/// A date so many days from today, in a form of Qt's.
QString DayFromToday(int days, const char *form);

/// Not answered yet, the only line of its order, and of a quantity that is easily halved.
bool IsPlain(const Line &line);

/// Of what is to be delivered, as it is typed.
QString Half(const Line &line);

/// A day of an operator, as the guide tells it: search, the list by keyboard, splits, checks and
/// questions, creation, a call about an earlier answer, a plan that lives in a spreadsheet, paper,
/// another customer.
class Day : public Tour
{
public:
    using Tour::Tour;

private:
    void Plan() override;
    void PlanSearch();
    void PlanDates();
    void PlanSplit();
    void PlanManyDates();
    void PlanCreation();
    void PlanCall();
    void PlanSpreadsheet();
    void PlanPaper();
    void PlanNextCustomer();

    // Steps that come again and again.
    void PlanPick(const QString &picker, const QString &picture, const QString &text);
    void PlanSummary(const QString &picture);

    const Line &ActiveLine();
    int RowOf(const std::function<bool(const Line &)> &isWanted);
    void GoTo(const std::function<bool(const Line &)> &isWanted);
    void TypeIntoDate(int days);
    void TypeDate(int days); ///< so many days from today
    void Expect(bool isSo, const QString &what);
    void ExpectText(const QString &box, const QString &text = {});
    QString BoxText();
    void AnswerElsewhere(const Line &line);
    void EditPlan();
};
