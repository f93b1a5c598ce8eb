// Plans of many jobs by one process: what "labelcut plan --json" writes, for a line of JSON each.
//
//     plan_driver PLUGINS      PLUGINS is the folder of the plug-ins
//
// A line says {"ppd": path, "set": [[keyword, choice] …], "measures": [[width, length] …] in
// points, "ofFiles": [pages …], "pages": "1,3-5", "copies": n, "reverse": b, "collate": b,
// "fit": ""|"actual"|"scale"|"turn"}. The printer stays open while the PPD is the same.
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <iostream>
#include <string>

#include "host/cli/amount_arguments.h"
#include "host/cli/plan_json.h"
#include "host/plan/printer_plan.h"
#include "host/printers/printer_source.h"

using namespace labelcut;

namespace {

/// @return null: there is no such printer, which is said.
std::unique_ptr<OpenedPrinter> opened(const QString& ppd, const PluginSearch& plugins) {
    static const HostSystem system;
    Result<FoundPrinter> found = findPpdFile(ppd);
    if (!found) {
        std::cerr << found.error().sentence.toStdString() << '\n';
        return nullptr;
    }
    return std::make_unique<OpenedPrinter>(std::move(*found), Settings(), plugins, system);
}

Amount amountOf(const QJsonObject& job) {
    AmountArguments arguments;
    arguments.handling.copies = job[QLatin1String("copies")].toInt(1);
    arguments.pages = job[QLatin1String("pages")].toString().toStdString();
    arguments.handling.isReversed = job[QLatin1String("reverse")].toBool();
    arguments.handling.isUncollated = !job[QLatin1String("collate")].toBool(true);
    arguments.handling.fit = job[QLatin1String("fit")].toString().toStdString();
    return arguments.with(std::nullopt, arguments.parsed());
}

std::shared_ptr<DocumentPages> documentOf(const QJsonObject& job) {
    auto pages = std::make_shared<DocumentPages>();
    for (const auto& measure : job[QLatin1String("measures")].toArray())
        pages->measures.emplace_back(measure[0].toDouble(), measure[1].toDouble());
    for (const auto& count : job[QLatin1String("ofFiles")].toArray())
        pages->ofFiles.push_back(count.toInt());
    return pages;
}

void choose(OpenedPrinter& printer, const QJsonObject& job) {
    Settings asked;
    for (const auto& setting : job[QLatin1String("set")].toArray())
        asked.push_back({setting[0].toString(), setting[1].toString()});
    printer.choose(asked);
    printer.insist(asked);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    const PluginSearch plugins = loadPlugins(QString::fromLocal8Bit(argv[1]));
    std::unique_ptr<OpenedPrinter> printer;
    QString ppd;
    for (std::string line; std::getline(std::cin, line);) {
        const QJsonObject job = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
        if (const QString path = job[QLatin1String("ppd")].toString(); path != ppd) {
            ppd = path;
            printer = opened(path, plugins);
            if (!printer)
                return 1;
        }
        choose(*printer, job);
        const JobPlan plan(planInputFor(*printer, amountOf(job), documentOf(job)));
        if (plan.labels() > 0)
            writePlanJson(printer->title(), plan, stdout);
        else
            std::puts("{\n}");
        std::fflush(stdout);
    }
    return 0;
}
