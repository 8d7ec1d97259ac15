#include "support/certificates.h"

#include "support/open_folder.h"
#include <QDebug>
#include <cstdio>
#include <memory>
#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>
#include <sys/stat.h>

namespace {

using key_pointer = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using x509_pointer = std::unique_ptr<X509, decltype(&X509_free)>;

constexpr long year = 365L * 24 * 3600;
constexpr const char *here = "DNS:localhost,IP:127.0.0.1,IP:127.0.0.2,IP:::1";

struct identity {
    key_pointer key{nullptr, EVP_PKEY_free};
    x509_pointer certificate{nullptr, X509_free};
};

struct wanted {
    const char *name;
    const char *alternative_names; // null: an authority
    long from = -year, until = 10 * year;
};

void must(bool done, const char *what)
{
    if (!done)
        qFatal("cannot make test certificates: %s", what);
}

void extend(X509 *certificate, X509 *issuer, int kind, const char *value)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    X509_EXTENSION *extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value);
    must(extension && X509_add_ext(certificate, extension, -1), value);
    X509_EXTENSION_free(extension);
}

void name_it(X509 *certificate, const char *name)
{
    X509_NAME *subject = X509_get_subject_name(certificate);
    must(X509_NAME_add_entry_by_txt(subject, "CN", MBSTRING_UTF8, reinterpret_cast<const unsigned char *>(name), -1, -1,
                                    0),
         "name");
}

void number_it(X509 *certificate)
{
    unsigned char serial[8];
    must(RAND_bytes(serial, sizeof serial), "serial number");
    serial[0] &= 0x7f; // positive
    BIGNUM *number = BN_bin2bn(serial, sizeof serial, nullptr);
    must(number && BN_to_ASN1_INTEGER(number, X509_get_serialNumber(certificate)), "serial number");
    BN_free(number);
}

// Without an issuer it signs itself.
identity make(const wanted &what, const identity *issuer)
{
    identity made;
    made.key.reset(EVP_EC_gen("P-256"));
    must(made.key != nullptr, "key");
    made.certificate.reset(X509_new());
    X509 *certificate = made.certificate.get();
    must(X509_set_version(certificate, X509_VERSION_3), "version");
    number_it(certificate);
    X509_gmtime_adj(X509_getm_notBefore(certificate), what.from);
    X509_gmtime_adj(X509_getm_notAfter(certificate), what.until);
    name_it(certificate, what.name);
    X509 *signer = issuer ? issuer->certificate.get() : certificate;
    must(X509_set_issuer_name(certificate, X509_get_subject_name(signer)), "issuer");
    must(X509_set_pubkey(certificate, made.key.get()), "public key");
    extend(certificate, signer, NID_subject_key_identifier, "hash");
    extend(certificate, signer, NID_authority_key_identifier, "keyid:always");
    extend(certificate, signer, NID_basic_constraints,
           what.alternative_names ? "critical,CA:FALSE" : "critical,CA:TRUE");
    if (what.alternative_names)
        extend(certificate, signer, NID_subject_alt_name, what.alternative_names);
    else
        extend(certificate, signer, NID_key_usage, "critical,keyCertSign,cRLSign");
    must(X509_sign(certificate, issuer ? issuer->key.get() : made.key.get(), EVP_sha256()), "signature");
    return made;
}

template <class Write>
void write_pem(const QString &path, const Write &write)
{
    std::FILE *file = std::fopen(path.toLocal8Bit().constData(), "w");
    must(file && ::fchmod(::fileno(file), 0644) == 0 && write(file), qPrintable(path)); // the servers' user reads it
    must(std::fclose(file) == 0, qPrintable(path));
}

void keep(const identity &made, const QString &stem)
{
    write_pem(stem + QStringLiteral(".pem"),
              [&](std::FILE *file) { return PEM_write_X509(file, made.certificate.get()) == 1; });
    write_pem(stem + QStringLiteral(".key"), [&](std::FILE *file) {
        return PEM_write_PrivateKey(file, made.key.get(), nullptr, nullptr, 0, nullptr, nullptr) == 1;
    });
}

}

certificates::certificates() : folder(folder_template("certificates"))
{
    open_to_servers(folder);
    const identity ours = make({"Tests' own authority", nullptr}, nullptr);
    const identity unknown = make({"Nobody's authority", nullptr}, nullptr);
    keep(ours, file("ca"));
    keep(make({"localhost", here}, &ours), file("good"));
    keep(make({"mail.example.org", "DNS:mail.example.org"}, &ours), file("other_host"));
    keep(make({"localhost", here, -2 * year, -year}, &ours), file("expired"));
    keep(make({"localhost", here}, &unknown), file("unknown_authority"));
    keep(make({"localhost", here}, nullptr), file("self_signed"));
}

certificate_files certificates::files(const char *name) const
{
    return {file(name) + QStringLiteral(".pem"), file(name) + QStringLiteral(".key")};
}
