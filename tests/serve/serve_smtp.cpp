// The recording SMTP server for the benches: serve_smtp [--delay MS]
// Says its port in one line of JSON, then answers a line of JSON to each word on stdin, and ends with it:
//   count   the mails accepted so far, and the round trips since the last "count"
// --delay: a proxy adds so much to each round trip and counts. The server as a program that can fail: smtp_sink.
#include "support/smtp_sink.h"
#include "support/wire_proxy.h"
#include <QCommandLineParser>
#include <QCoreApplication>
#include <iostream>
#include <optional>
#include <string>

int main(int count, char **argument)
{
    const QCoreApplication application(count, argument);
    QCommandLineParser words;
    words.addOption({"delay", "Added to each round trip, in milliseconds.", "MS"});
    words.process(application);
    const smtp_sink sink;
    std::optional<wire_proxy> line;
    if (words.isSet("delay"))
        line.emplace(sink.port(), wire_options{std::chrono::milliseconds(words.value("delay").toInt())});
    std::cout << "{\"port\": " << (line ? line->port : sink.port()) << "}" << std::endl;
    for (std::string word; std::getline(std::cin, word);) {
        std::cout << "{\"accepted\": " << sink.taken()
                  << ", \"round_trips\": " << (line ? line->counts().round_trips : 0) << "}" << std::endl;
        if (line)
            line->forget();
    }
}
