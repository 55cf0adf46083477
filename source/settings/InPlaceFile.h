#pragma once

#include <QByteArray>
#include <QString>

/// Writes a finished buffer into a file in place, so that links, rights and watchers of the file stay valid.
/// The space is reserved before the old content is touched: a full disk leaves the old file whole. False on
/// any failure.
bool writeInPlace(const QString& fileName, const QByteArray& bytes);
