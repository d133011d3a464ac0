#include "update/UpdateSignature.h"

#include <QFile>

#include <sodium.h>

namespace lumabroom::UpdateSignature {

namespace {

std::optional<QByteArray> decoded(const QByteArray& base64, std::size_t size) {
    const auto result = QByteArray::fromBase64Encoding(base64.trimmed(), QByteArray::AbortOnBase64DecodingErrors);
    if (!result || static_cast<std::size_t>(result.decoded.size()) != size) return std::nullopt;
    return result.decoded;
}

} // namespace

bool verify(QByteArrayView message, const QByteArray& signatureBase64, const QByteArray& publicKeyBase64) {
    // Thread-safe and idempotent; it fails only when the system has no source of randomness,
    // which verifying does not need.
    [[maybe_unused]] const int ready = sodium_init();
    const auto signature = decoded(signatureBase64, crypto_sign_BYTES);
    const auto key = decoded(publicKeyBase64, crypto_sign_PUBLICKEYBYTES);
    if (!signature || !key) return false;
    static const unsigned char nothing = 0;
    const auto* bytes = message.isEmpty() ? &nothing : reinterpret_cast<const unsigned char*>(message.data());
    return crypto_sign_verify_detached(reinterpret_cast<const unsigned char*>(signature->constData()), bytes,
                                       static_cast<unsigned long long>(message.size()),
                                       reinterpret_cast<const unsigned char*>(key->constData()))
           == 0;
}

bool verifyFile(const QString& path, const QByteArray& signatureBase64, const QByteArray& publicKeyBase64) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return false;
    if (file.size() == 0) return verify({}, signatureBase64, publicKeyBase64);
    // Mapped rather than read, so a large installer is not copied into memory.
    const uchar* mapped = file.map(0, file.size());
    if (!mapped) return false;
    const bool valid = verify(QByteArrayView(mapped, file.size()), signatureBase64, publicKeyBase64);
    file.unmap(const_cast<uchar*>(mapped));
    return valid;
}

} // namespace lumabroom::UpdateSignature
