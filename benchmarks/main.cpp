#include "Benches.h"

#include "app/Desktop.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace {

const Sizes Full = {.folder = {},
                    .database = 1'000'000,
                    .smallDatabase = 10'000,
                    .lists = {1'000, 10'000, 100'000},
                    .longest = 1'000'000,
                    .list = 100'000,
                    .search = 2'000,
                    .orders = 10'000,
                    .products = 50'000,
                    .farOrders = 1'000};

const Sizes Quick = {.folder = {},
                     .database = 80'000,
                     .smallDatabase = 10'000,
                     .lists = {1'000, 10'000, 20'000},
                     .longest = 100'000,
                     .list = 20'000,
                     .search = 2'000,
                     .orders = 200,
                     .products = 50'000,
                     .farOrders = 50};

struct Group
{
    const char *name;
    void (*run)(const Sizes &sizes, std::vector<Measurement> &results);
};

constexpr Group Groups[] = {
    {"loading", BenchLoading}, {"commands", BenchCommands}, {"sheets", BenchSheets},
    {"output", BenchOutput},   {"start", BenchStart},       {"server", BenchServer},
};

} // namespace

int main(int argc, char **argv)
{
    if (argc > 2 && std::strcmp(argv[1], "--first-window") == 0)
        return ShowFirstWindow(argc - 2, argv + 2);

    QApplication application(argc, argv);
    PrepareDesktop(application);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Times the program against the bare minimum for the same work.");
    parser.addHelpOption();
    const QCommandLineOption quick("quick", "Smaller sizes, under a minute.");
    const QCommandLineOption json("json", "Writes the results to FILE too.", "FILE");
    const QCommandLineOption only(
        "only", "One group: loading, commands, sheets, output, start or server.", "GROUP");
    const QCommandLineOption farOrders("far-orders", "Orders over the slow network to a server.",
                                       "N");
    parser.addOptions({quick, json, only, farOrders});
    parser.addPositionalArgument("FOLDER", "Where the data is kept from run to run.");
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);

    Sizes sizes = parser.isSet(quick) ? Quick : Full;
    if (parser.isSet(farOrders))
        sizes.farOrders = parser.value(farOrders).toInt();
    sizes.folder = parser.positionalArguments()[0];
    std::vector<Measurement> results;
    try {
        for (const Group &group : Groups)
            if (!parser.isSet(only) || parser.value(only) == group.name)
                group.run(sizes, results);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench: %s\n", error.what());
        return 1;
    }
    std::fputs(qPrintable(ToTable(results)), stdout);
    if (parser.isSet(json)) {
        QFile file(parser.value(json));
        if (!file.open(QIODevice::WriteOnly) || file.write(ToJson(results)) < 0)
            return 1;
    }
    return 0;
}
