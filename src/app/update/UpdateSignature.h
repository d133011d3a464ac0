#pragma once

#include <QByteArray>
#include <QString>

namespace lumabroom::UpdateSignature {

// Whether `signatureBase64` is a valid Ed25519 signature, by the key `publicKeyBase64`, of the whole
// content of the file at `path`. False for an unreadable file and for a key or signature that is
// not base64 of the right size, so an empty key accepts nothing.
bool verifyFile(const QString& path, const QByteArray& signatureBase64, const QByteArray& publicKeyBase64);

// The same over bytes in memory.
bool verify(QByteArrayView message, const QByteArray& signatureBase64, const QByteArray& publicKeyBase64);

} // namespace lumabroom::UpdateSignature
