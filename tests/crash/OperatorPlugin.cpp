#include "support/Operator.h"

#include <QAbstractButton>
#include <QDate>
#include <QFile>
#include <QGenericPlugin>
#include <QMessageBox>
#include <QTableView>
#include <cstdio>

/// An operator inside the program itself, loaded by Qt when the environment asks for it
/// (QT_QPA_GENERIC_PLUGINS=operator): answers every line of the list, one of them by half with a
/// split for the rest, says yes to what is asked, and leaves. What boxes say goes to the standard
/// output, one line each. With OPERATOR_GATE set, the answers wait for a file of that name once
/// "ready" has been written.
class OperatorPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "operator.json")

public:
    QObject *create(const QString &, const QString &) override
    {
        auto *hands = new Operator;
        Plan(*hands);
        hands->Start(60'000);
        return hands;
    }

private:
    static void Say(const QString &text)
    {
        std::printf("%s\n", text.simplified().toUtf8().constData());
        std::fflush(stdout);
    }

    static QTableView *List() { return Operator::Front({})->findChild<QTableView *>("spdList"); }

    static QString Cell(int row, int column)
    {
        return List()->model()->index(row - 1, column - 1).data().toString();
    }

    static void SelectAll(Operator &hands)
    {
        hands.ClickCell("spdList", 5, 1);
        hands.Key(Qt::Key_A, Qt::ControlModifier);
    }

    static void Plan(Operator &hands)
    {
        constexpr int Quantity = 5;
        constexpr int SplitRow = 2;
        const auto setDate = [&hands] {
            hands.At("InputBox", "date", [&hands] {
                hands.Keys(QDate::currentDate().addDays(20).toString("yyMMdd"));
                hands.Key(Qt::Key_Return);
            });
        };
        hands.At("SC030010", "search screen", [&hands] { hands.Click("cmdList"); });
        hands.Then(
            "list", [] { return Operator::Front("SC030110") && List()->model()->rowCount() > 0; },
            [&hands] {
                SelectAll(hands);
                hands.Click("cmdLimSet");
            });
        setDate();
        hands.At("SC030110", "half of a line", [&hands] {
            hands.ClickCell("spdList", Quantity, SplitRow);
            hands.Keys("60");
            hands.Key(Qt::Key_Return);
            // A split that was stored before a crash is not made again.
            const bool isSplit = Cell(SplitRow, 2) == Cell(SplitRow + 1, 2);
            hands.ClickRow("spdList", SplitRow);
            if (!isSplit)
                hands.Click("cmdCopy");
            hands.ClickRow("spdList", SplitRow + 1);
            hands.Click("cmdLimSet");
        });
        setDate();
        hands.At("SC030110", "answers", [&hands] {
            SelectAll(hands);
            Say("ready");
        });
        hands.Then(
            "gate",
            [] {
                const QString gate = qEnvironmentVariable("OPERATOR_GATE");
                return (gate.isEmpty() || QFile::exists(gate)) && Operator::Front("SC030110");
            },
            [&hands] { hands.Click("cmdMake"); });
        // As many boxes as there are, then out.
        hands.Then(
            "the end of the run", [&hands] { return IsBack(hands, "SC030110"); },
            [&hands] { hands.Click("cmdExit"); });
        hands.Then(
            "search screen again", [&hands] { return IsBack(hands, "SC030010"); },
            [&hands] {
                Say("done");
                hands.Click("cmdExit");
            });
    }

    /// Closes a box that is there; true once the window is in front.
    static bool IsBack(Operator &hands, const QString &window)
    {
        if (QWidget *front = Operator::Front("MsgBox")) {
            auto *box = static_cast<QMessageBox *>(front);
            Say("box: " + box->text());
            if (QAbstractButton *yes = box->button(QMessageBox::Yes))
                yes->setFocus();
            hands.Key(Qt::Key_Return);
            return false;
        }
        return Operator::Front(window) != nullptr;
    }
};

#include "OperatorPlugin.moc"
