#pragma once

#include <QObject>
#include <QString>

class QLineEdit;

/// Keeps the decimal point of a number in a right-aligned box at one place, whatever stands behind
/// it: boxes of the same width one below the other have their points in one line. There is room for
/// the decimals of the digit spec.
class DecimalAlignment : public QObject
{
public:
    DecimalAlignment(QLineEdit &box, const QString &spec);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void Align();

    QLineEdit &m_box;
    int m_decimals;
};
