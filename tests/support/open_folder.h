// Temporary folders that a server may read which runs with fewer rights than the test.
#pragma once
#include <QString>

class QTemporaryDir;

QString folder_template(const char *name); // for QTemporaryDir: short, as sockets below it have short names too
void open_to_servers(const QTemporaryDir &folder);
