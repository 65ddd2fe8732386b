// The operating system's services: one copy of the program, kept by a lock file.
#include "apoyo/ejecucion.h"
#include "platform/datos/sistema.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Sistema;

class TstSistema : public QObject {
    Q_OBJECT
    QTemporaryDir dir;

    /// Holds the lock file at `ruta` as another copy would: a descriptor of its own with the
    /// kernel's lock on it. Gives the descriptor (-1 when the lock is taken), to close.
    static int Tomar(const QString &ruta) {
        const int fd =
            ::open(QFile::encodeName(ruta).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (fd >= 0 && ::flock(fd, LOCK_EX | LOCK_NB) != 0) {
            ::close(fd);
            return -1;
        }
        return fd;
    }

    static QString Cerrojo(const QString &programa) {
        return QDir(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation))
            .filePath(programa + QStringLiteral(".lock"));
    }

    /// A name no other run of this test shares.
    static QString Programa(const char *base) {
        return QStringLiteral("tarifas_prueba_%1_%2")
            .arg(QLatin1String(base))
            .arg(QCoreApplication::applicationPid());
    }

  private slots:
    void initTestCase() {
        QVERIFY(dir.isValid());
        // A runtime directory and a temporary folder of this test's own.
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("run")));
        QFile::setPermissions(dir.filePath(QStringLiteral("run")), QFileDevice::ReadOwner |
                                                                       QFileDevice::WriteOwner |
                                                                       QFileDevice::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", dir.filePath(QStringLiteral("run")).toUtf8());
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("tmp")));
        qputenv("TMPDIR", dir.filePath(QStringLiteral("tmp")).toUtf8());
    }

    void primeraCopia() {
        const QString programa = Programa("primera");
        QVERIFY(!HayInstanciaPrevia(programa));
        // This process holds the lock now: another copy would find it taken.
        QCOMPARE(Tomar(Cerrojo(programa)), -1);
        // Asking again from the same copy doesn't make it its own rival.
        QVERIFY(!HayInstanciaPrevia(programa));
    }

    void otraCopiaViva() {
        const QString programa = Programa("otra");
        const int otra = Tomar(Cerrojo(programa));
        QVERIFY(otra >= 0);
        QVERIFY(HayInstanciaPrevia(programa));
        ::close(otra); // it ends: the next start is the copy that runs
        QVERIFY(!HayInstanciaPrevia(programa));
    }

    void restos_data() {
        QTest::addColumn<QByteArray>("contenido");
        QTest::newRow("left by a copy that crashed") << QByteArray("999999999\ntarifas\n\n");
        QTest::newRow("garbage") << QByteArray("\x01\xfe no pid here\n");
    }
    void restos() {
        // A lock file that no live copy holds doesn't stop the program, whatever it holds.
        QFETCH(QByteArray, contenido);
        const QString programa =
            Programa("restos") + QString::number(qHash(QByteArray(QTest::currentDataTag())));
        QFile f(Cerrojo(programa));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(contenido);
        f.close();
        QVERIFY(!HayInstanciaPrevia(programa));
        QCOMPARE(Tomar(Cerrojo(programa)), -1); // and now this copy holds it
    }

    void sinCarpetaDeSesion_data() {
        QTest::addColumn<bool>("carpetaAjena");
        QTest::newRow("a folder of the account's own in the temporary folder") << false;
        QTest::newRow("that folder's name taken by another account") << true;
    }
    void sinCarpetaDeSesion() {
        // Without a runtime directory each account still has a lock of its own.
        QFETCH(bool, carpetaAjena);
        const QString propia = QDir::temp().filePath(QStringLiteral("tarifas-%1").arg(::geteuid()));
        QDir(propia).removeRecursively();
        if (carpetaAjena) {
            if (::geteuid() != 0)
                QSKIP("Only root can give a folder to another account");
            QVERIFY(QDir().mkdir(propia));
            QVERIFY(::chown(QFile::encodeName(propia).constData(), 65534, 65534) == 0);
        }
        const QByteArray antes = qgetenv("XDG_RUNTIME_DIR");
        qunsetenv("XDG_RUNTIME_DIR");
        const QString programa = Programa(carpetaAjena ? "ajena" : "propia");
        const bool previa = HayInstanciaPrevia(programa);
        qputenv("XDG_RUNTIME_DIR", antes);
        QVERIFY(!previa);
        const QString esperado =
            carpetaAjena ? QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
                         : propia;
        QCOMPARE(Tomar(QDir(esperado).filePath(programa + QStringLiteral(".lock"))), -1);
        if (!carpetaAjena)
            QCOMPARE(QFileInfo(propia).permissions() & 0x0077, QFileDevice::Permissions());
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstSistema)
#include "tst_sistema.moc"
