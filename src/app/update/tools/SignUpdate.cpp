// Makes the key pair that signs releases, and signs a release for its appcast item:
//   lumabroom-sign-update generate-keys SECRET-KEY-FILE   writes the secret key, prints the public key
//   lumabroom-sign-update sign SECRET-KEY-FILE FILE       prints the enclosure's signature and length
// Keys and signatures are base64; the public key goes into LUMABROOM_UPDATE_PUBLIC_KEY at build time.

#include <QByteArray>
#include <QFile>

#include <sodium.h>

#include <cstdio>
#include <filesystem>
#include <string_view>

namespace {

int usage() {
    std::fputs("usage: lumabroom-sign-update generate-keys SECRET-KEY-FILE\n"
               "       lumabroom-sign-update sign SECRET-KEY-FILE FILE\n",
               stderr);
    return 2;
}

int fail(const char* what, const char* path) {
    std::fprintf(stderr, "lumabroom-sign-update: %s: %s\n", what, path);
    return 1;
}

int generateKeys(const char* secretPath) {
    if (std::filesystem::exists(secretPath)) return fail("will not overwrite", secretPath);
    unsigned char publicKey[crypto_sign_PUBLICKEYBYTES];
    unsigned char secretKey[crypto_sign_SECRETKEYBYTES];
    crypto_sign_keypair(publicKey, secretKey);
    QFile file(QString::fromLocal8Bit(secretPath));
    // Readable by its owner alone from the moment it exists.
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        return fail("cannot write", secretPath);
    const QByteArray encoded = QByteArray(reinterpret_cast<const char*>(secretKey), sizeof secretKey).toBase64() + '\n';
    sodium_memzero(secretKey, sizeof secretKey);
    if (file.write(encoded) != encoded.size() || !file.flush()) return fail("cannot write", secretPath);
    std::printf("%s\n", QByteArray(reinterpret_cast<const char*>(publicKey), sizeof publicKey).toBase64().constData());
    return 0;
}

int sign(const char* secretPath, const char* path) {
    QFile secretFile(QString::fromLocal8Bit(secretPath));
    if (!secretFile.open(QIODevice::ReadOnly)) return fail("cannot read", secretPath);
    const auto secret =
        QByteArray::fromBase64Encoding(secretFile.readAll().trimmed(), QByteArray::AbortOnBase64DecodingErrors);
    if (!secret || secret.decoded.size() != crypto_sign_SECRETKEYBYTES) return fail("not a secret key", secretPath);
    QFile file(QString::fromLocal8Bit(path));
    if (!file.open(QIODevice::ReadOnly)) return fail("cannot read", path);
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError) return fail("cannot read", path);
    unsigned char signature[crypto_sign_BYTES];
    crypto_sign_detached(signature, nullptr, reinterpret_cast<const unsigned char*>(content.constData()),
                         static_cast<unsigned long long>(content.size()),
                         reinterpret_cast<const unsigned char*>(secret.decoded.constData()));
    std::printf("lumabroom:edSignature=\"%s\" length=\"%lld\"\n",
                QByteArray(reinterpret_cast<const char*>(signature), sizeof signature).toBase64().constData(),
                static_cast<long long>(content.size()));
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (sodium_init() < 0) return fail("no source of randomness", "libsodium");
    const std::string_view command = argc > 1 ? argv[1] : "";
    if (command == "generate-keys" && argc == 3) return generateKeys(argv[2]);
    if (command == "sign" && argc == 4) return sign(argv[2], argv[3]);
    return usage();
}
