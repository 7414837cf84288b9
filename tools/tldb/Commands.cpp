#include "tldb/Commands.h"

#include "platform/Version.h"

#include <QCommandLineParser>
#include <vector>

namespace {

struct Option
{
    const char *name;
    const char *valueName; ///< null for a switch
    const char *help;
};

struct Command
{
    const char *name;
    const char
        *operands; ///< names, with blanks between them; in [ ] the last if it may be left out
    const char *summary;
    const char *details;
    const char *example; ///< what is typed after "tldb"
    std::vector<Option> options;
    int (*run)(const QCommandLineParser &arguments, QTextStream &out, QTextStream &err);
};

/// What narrows down a list of delivery lines, and `more` options.
std::vector<Option> ListOptions(std::vector<Option> more)
{
    std::vector<Option> options = {
        {"customer", "CODE", "customers whose code begins so"},
        {"section", "CODE", "customer's sections whose code begins so"},
        {"product", "CODE", "products whose code begins so"},
        {"name", "TEXT", "products whose name begins so"},
        {"order", "NUMBER", "order numbers that begin so"},
        {"maker", "NUMBER", "maker's numbers that begin so"},
        {"pay-key", "KEY", "delivery keys that begin so"},
        {"from", "YYYYMMDD", "first day"},
        {"to", "YYYYMMDD", "last day"},
        {"by", "DATE", "day of what: ship (default), specified or order"},
    };
    options.insert(options.end(), more.begin(), more.end());
    return options;
}

const Option Server = {"server", "SETTINGS",
                       "put the database on a PostgreSQL server (\"host=db dbname=tldb0010\")"};

const std::vector<Command> &Commands()
{
    static const std::vector<Command> commands = {
        {"create",
         "DIR",
         "make an empty TLDB0010.MDB in DIR",
         "DIR is made when it is missing. A database that is there already is left as it is.",
         "create /srv/talven/db",
         {Server},
         RunCreate},
        {"demo",
         "DIR",
         "make a TLDB0010.MDB with demonstration data in DIR",
         "Also writes DIR/TALVEN.INI and the folders that its drives stand for. The same lines,\n"
         "seed and date give the same data.",
         "demo --lines 500 build/demo",
         {{"lines", "N", "number of delivery lines, 1 to 10000000 (default 2000)"},
          {"seed", "S", "start of the random numbers (default 1)"},
          {"date", "YYYYMMDD", "day that the data is made for (default today)"},
          Server},
         RunDemo},
        {"check",
         "DIR",
         "check DIR/TLDB0010.MDB and list what is wrong",
         "One line per finding: table, key, column, what is wrong. Nothing is written to the\n"
         "database, but a write that a crash interrupted is rolled back.",
         "check /srv/talven/db",
         {},
         RunCheck},
        {"import",
         "OLD.MDB DIR",
         "make a TLDB0010.MDB in DIR from a database in the original engine's format",
         "OLD.MDB, in format 4, is only read. DIR is made when it is missing; it must not have a\n"
         "TLDB0010.MDB. Every table is taken over. Columns of the system that the old tables lack\n"
         "are blank or 0; columns and tables that the system does not know are kept. Trailing\n"
         "blanks of texts in the system's columns are removed, because the program's comparisons\n"
         "expect none, and a NUL becomes a blank; all else stays as it is. Named are rows that\n"
         "can't be written and are left out, and values that can't be what was written; a damage\n"
         "that makes one good value another can't be seen, as the old format has no checksums.\n"
         "Then the new database is checked as by \"tldb check\".",
         "import TLDB0010-OLD.MDB /srv/talven/db",
         {Server},
         RunImport},
        {"upgrade",
         "DIR",
         "give DIR/TLDB0010.MDB the table of the answer history",
         "The database is copied to DIR/TLDB0010-YYYYMMDD-HHMMSS.MDB first. Other programs may\n"
         "have it open; their writing waits meanwhile. A database that has the table (TLAH0010)\n"
         "already is left as it is. On a server nothing is copied: its backups are its own.",
         "upgrade /srv/talven/db",
         {},
         RunUpgrade},
        {"history",
         "DIR [ORDER]",
         "show what was answered when, from DIR/TLDB0010.MDB",
         "One line for each line of each answer, the oldest answer first; \"-\" is a blank. "
         "ORDER,\n"
         "the customer's order number, shows the answers to that order alone. An answer of kind 2\n"
         "changes an earlier one.",
         "history /srv/talven/db 2609-00010093",
         {},
         RunHistory},
        {"move",
         "DIR",
         "copy DIR/TLDB0010.MDB to a PostgreSQL server",
         "The file is only read and stays as it is; nobody can write to it meanwhile. What has\n"
         "arrived on the server is read again and compared, and nothing is left there when it\n"
         "differs. DIR gets TLDB0010-SERVER.MDB, which names the server and is to take the\n"
         "place of TLDB0010.MDB.",
         "move --server \"host=db dbname=tldb0010\" /srv/talven/db",
         {{"server", "SETTINGS", "connection settings of an empty database, without a password"}},
         RunMove},
        {"show-answers",
         "FILE",
         "show the records of a delivery-date answer file",
         "Bytes of the file are counted from 1. An answered date of 99999999 stands for none.",
         "show-answers --json /srv/talven/c/EDI/OUT/ANS.TXT",
         {{"json", nullptr, "write a JSON array of records"}},
         RunShowAnswers},
        {"answers export", "DIR FILE", "write the list of delivery lines to a CSV file or workbook",
         "FILE is what the program writes of its list: a workbook when its name ends in .xlsx, "
         "else\n"
         "CSV in UTF-8. The conditions are those of the program's search; without any, all lines\n"
         "that it lists are written.",
         "answers export --customer C0001 /srv/talven/db answers.csv",
         ListOptions({{"shift-jis", nullptr, "write CSV in Shift-JIS"}}), RunExportAnswers},
        {"answers check", "DIR FILE", "tell what a CSV file would change in the list",
         "One line per row of FILE that is not left as it is: the line of the file, the delivery\n"
         "line, and what would change or why it is refused. Nothing is changed. The program takes\n"
         "the file in by its list.",
         "answers check --customer C0001 /srv/talven/db answers.csv", ListOptions({}),
         RunCheckSheet},
    };
    return commands;
}

const char ExitCodeHelp[]
    = "Exit code: 0 all is well, 1 something was found or failed, 2 wrong use.";

void ShowToolHelp(QTextStream &out)
{
    out << "Usage: tldb COMMAND [OPTIONS] ...\n\nCommands:\n";
    for (const Command &command : Commands())
        out << "  " << QString("%1 %2").arg(command.name, command.operands).leftJustified(25)
            << command.summary << '\n';
    out << "\n"
        << ExitCodeHelp
        << "\n\"tldb COMMAND --help\" tells more about a command, with an example;\n"
           "\"tldb --version\" tells which tldb this is.\n";
}

QString SyntaxOf(const Option &option)
{
    return QString("--") + option.name + (option.valueName ? QString(" ") + option.valueName : "");
}

void ShowCommandHelp(const Command &command, QTextStream &out)
{
    out << "Usage: tldb " << command.name;
    for (const Option &option : command.options)
        out << " [" << SyntaxOf(option) << ']';
    out << ' ' << command.operands << "\n\n"
        << command.name << ": " << command.summary << ".\n"
        << command.details << "\n\n";
    for (const Option &option : command.options)
        out << "  " << SyntaxOf(option).leftJustified(18) << option.help << '\n';
    out << "  " << QString("--help").leftJustified(18) << "show this text\n\n"
        << "Example: tldb " << command.example << "\n\n"
        << ExitCodeHelp << '\n';
}

int RunCommand(const Command &command, const QStringList &arguments, QTextStream &out,
               QTextStream &err)
{
    QCommandLineParser parser;
    parser.addOption({{"h", "help"}, {}});
    for (const Option &option : command.options)
        parser.addOption({option.name, {}, option.valueName});
    const auto complain = [&](const QString &what) {
        return Complain(err, QString("%1: %2; see tldb %1 --help").arg(command.name, what),
                        ExitCode::WrongUse);
    };
    if (!parser.parse(arguments)) {
        QString error = parser.errorText();
        while (error.endsWith('.'))
            error.chop(1);
        return complain(error);
    }
    if (parser.isSet("help")) {
        ShowCommandHelp(command, out);
        return ExitCode::Ok;
    }
    const QStringList operands = QString(command.operands).split(' ');
    const QStringList given = parser.positionalArguments();
    const qsizetype needed = operands.size() - operands.last().startsWith('[');
    if (given.size() < needed || given.size() > operands.size() || given.contains(QString()))
        return complain(needed == 1 ? "one " + operands.join(" and perhaps ") + " is wanted"
                                    : operands.join(" and ") + " are wanted");
    return command.run(parser, out, err);
}

} // namespace

int RunTool(const QStringList &arguments, QTextStream &out, QTextStream &err)
{
    const QString name = arguments.value(0);
    if (name == "--help" || name == "-h") {
        ShowToolHelp(out);
        return ExitCode::Ok;
    }
    if (name == "--version") {
        out << "tldb " << ProgramVersion() << '\n';
        return ExitCode::Ok;
    }
    for (const Command &command : Commands()) {
        const QStringList words = QString(command.name).split(' ');
        if (arguments.mid(0, words.size()) == words)
            return RunCommand(command, arguments.mid(words.size() - 1), out, err);
    }
    return Complain(
        err,
        (name.isEmpty() ? QString("no command given") : QString("unknown command \"%1\"").arg(name))
            + "; see tldb --help",
        ExitCode::WrongUse);
}

int Complain(QTextStream &err, const QString &text, int exitCode)
{
    QString line = text;
    line.replace('\r', ' ').replace('\n', ' ');
    err << "tldb: " << line << '\n';
    err.flush();
    return exitCode;
}
