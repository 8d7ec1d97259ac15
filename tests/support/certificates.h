// Certificates for the servers of a test: an authority of our own and what it signed, fresh in every run.
#pragma once
#include <QString>
#include <QTemporaryDir>

// Two PEM files. With empty names a server speaks no TLS.
struct certificate_files {
    QString certificate, key;
    bool empty() const { return certificate.isEmpty(); }
};

// Every good one is valid from a year ago for ten years, the expired one ended a year ago: no clock can be so wrong.
class certificates {
public:
    certificates();

    QString authority() const { return file("ca.pem"); }                 // what a client is to trust
    certificate_files good() const { return files("good"); }             // localhost, 127.0.0.1, 127.0.0.2 and ::1
    certificate_files other_host() const { return files("other_host"); } // mail.example.org
    certificate_files expired() const { return files("expired"); }
    certificate_files unknown_authority() const { return files("unknown_authority"); } // signed, by nobody we trust
    certificate_files self_signed() const { return files("self_signed"); }

private:
    QString file(const char *name) const { return folder.filePath(QString::fromLatin1(name)); }
    certificate_files files(const char *name) const;
    QTemporaryDir folder;
};
