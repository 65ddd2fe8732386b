#include "sistema.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <map>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Sistema {

namespace {

/// A folder of this account's own, where a lock file can't be made or held by anybody else.
bool CarpetaPropia(const QString &carpeta) {
    struct stat datos {};
    const QByteArray ruta = QFile::encodeName(carpeta);
    return ::lstat(ruta.constData(), &datos) == 0 && S_ISDIR(datos.st_mode) &&
           datos.st_uid == ::geteuid() && (datos.st_mode & 022) == 0;
}

/// Where the lock files live: the account's runtime directory, which is its own. A session
/// without one gets a folder of the account's own in the temporary folder (tarifas-UID, made
/// private), so that two accounts never share a lock; should somebody else hold that name,
/// the account's cache folder.
QString CarpetaCerrojos() {
    if (!qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        const QString carpeta = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
        if (!carpeta.isEmpty() && QDir().mkpath(carpeta))
            return carpeta;
    }
    const QString temporal =
        QDir(QDir::tempPath()).filePath(QStringLiteral("tarifas-%1").arg(::geteuid()));
    ::mkdir(QFile::encodeName(temporal).constData(), 0700);
    if (CarpetaPropia(temporal))
        return temporal;
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    QDir().mkpath(cache);
    return cache;
}

} // namespace

bool HayInstanciaPrevia(const QString &programa) {
    // The lock is the kernel's lock on the file (flock), held through a descriptor kept open
    // until the process ends: it dies with its process, even on a crash, and nothing written
    // in the file matters. A file left empty, or with anything in it, by a copy that is gone
    // is simply locked again; only a live copy holding it keeps this one out.
    static std::map<QString, int> cerrojos;
    if (cerrojos.contains(programa))
        return false; // this copy is the one that holds it
    const QByteArray ruta =
        QFile::encodeName(QDir(CarpetaCerrojos()).filePath(programa + QStringLiteral(".lock")));
    const int fd = ::open(ruta.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0)
        return false; // no lock can be had: better two copies than none
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const bool otraCopia = errno == EWOULDBLOCK;
        ::close(fd);
        return otraCopia;
    }
    // For a person who looks: which process holds it.
    const QByteArray pid = QByteArray::number(qint64(::getpid())) + '\n';
    if (::ftruncate(fd, 0) == 0) [[maybe_unused]]
        const auto escrito = ::write(fd, pid.constData(), size_t(pid.size()));
    cerrojos.emplace(programa, fd);
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

} // namespace Sistema
