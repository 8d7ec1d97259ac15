// Runs the statements of a file, one a line, on a store: make_sample STORE FILE. Makes the sample site.
#include "platform/ado.h"
#include "platform/text_file.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() != 3) {
        std::fprintf(stderr, "usage: make_sample STORE FILE\n");
        return 2;
    }
    QString statement;
    try {
        ado::Connection store;
        store.ConnectionString = words[1];
        store.Open();
        for (const QString &line : ReadAll(words[2]).split(u'\n', Qt::SkipEmptyParts)) {
            statement = line;
            store.Execute(statement);
        }
        store.Close();
    } catch (const run_time_error &error) {
        std::fprintf(stderr, "%s\n%s\n", qPrintable(error.description), qPrintable(statement));
        return 1;
    }
}
