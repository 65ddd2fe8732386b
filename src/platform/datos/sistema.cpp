#include "sistema.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>
#include <map>
#include <memory>

namespace {

/// Where the lock files live: the user's runtime directory, or the temporary one where the
/// session has none (Qt would otherwise warn and make one up).
QString CarpetaCerrojos() {
#ifdef Q_OS_LINUX
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
        return QDir::tempPath();
#endif
    const QString carpeta = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return carpeta.isEmpty() || !QDir().mkpath(carpeta) ? QDir::tempPath() : carpeta;
}

} // namespace

bool HayInstanciaPrevia(const QString &programa) {
    // Each lock is held until the process ends. A copy that crashed leaves a file whose
    // process is gone, and QLockFile takes such a file over.
    static std::map<QString, std::unique_ptr<QLockFile>> cerrojos;
    if (cerrojos.contains(programa))
        return false; // this copy is the one that holds it
    auto cerrojo = std::make_unique<QLockFile>(
        QDir(CarpetaCerrojos()).filePath(programa + QStringLiteral(".lock")));
    // Only a dead owner makes the lock stale: a copy that has run for hours still holds it.
    cerrojo->setStaleLockTime(0);
    if (!cerrojo->tryLock(0))
        return cerrojo->error() == QLockFile::LockFailedError;
    cerrojos.emplace(programa, std::move(cerrojo));
    return false;
}

QString DirectorioPrograma() {
    return QCoreApplication::applicationDirPath();
}

int ExisteFichero(const QString &ruta) {
    if (ruta.isEmpty())
        return 0;
    return QFileInfo(ruta).isFile() ? int(ruta.size()) : 0;
}

QDate Hoy() {
    return QDate::currentDate();
}
