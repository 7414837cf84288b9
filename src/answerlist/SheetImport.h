#pragma once

#include "forms/Form.h"
#include "sheet/SheetPlan.h"

#include <memory>

class QAbstractItemModel;
class QTableView;

namespace Ui {
class SheetImport;
}

/// Shows what a file would change in the list, before anything changes: lines with their answers
/// before and after, splits, how many lines stay as they are, and the rows that can't be taken,
/// each with its line of the file. Accepted, the good ones are to be taken.
class SheetImport : public Form
{
    Q_OBJECT

public:
    SheetImport(const QString &fileName, const SheetPlan &plan, const LineList &list,
                QWidget *parent);
    ~SheetImport() override;

private:
    void ShowTaken(const SheetPlan &plan, const LineList &list);
    void ShowRefused(const SheetPlan &plan);
    void SetUp(QTableView &grid, QAbstractItemModel *model);

    std::unique_ptr<Ui::SheetImport> m_ui;
};
