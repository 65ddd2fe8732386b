// The operating system's services: one copy of the program, files, the program's directory.
#include "platform/datos/sistema.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

class TstSistema : public QObject {
    Q_OBJECT
    QTemporaryDir dir;

    static QString Cerrojo(const QString &programa) {
        QString carpeta = qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")
                              ? QDir::tempPath()
                              : QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
        return QDir(carpeta).filePath(programa + QStringLiteral(".lock"));
    }

    /// A name no other run of this test shares.
    static QString Programa(const char *base) {
        return QStringLiteral("tarifas_prueba_%1_%2")
            .arg(QLatin1String(base))
            .arg(QCoreApplication::applicationPid());
    }

  private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QVERIFY(dir.isValid());
    }

    void primeraCopia() {
        const QString programa = Programa("primera");
        QVERIFY(!HayInstanciaPrevia(programa));
        // This process holds the lock now: another process would find it taken.
        QLockFile otro(Cerrojo(programa));
        otro.setStaleLockTime(0);
        QVERIFY(!otro.tryLock(0));
        QCOMPARE(otro.error(), QLockFile::LockFailedError);
        // Asking again from the same copy doesn't make it its own rival.
        QVERIFY(!HayInstanciaPrevia(programa));
    }

    void otraCopiaViva() {
        const QString programa = Programa("otra");
        QLockFile primera(Cerrojo(programa));
        QVERIFY(primera.tryLock(0));
        QVERIFY(HayInstanciaPrevia(programa));
        primera.unlock();
    }

    void copiaMuerta() {
        // A lock file left by a copy that crashed (its process is gone) doesn't stop the program.
        const QString programa = Programa("muerta");
        QFile f(Cerrojo(programa));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("999999999\ntarifas\n\n");
        f.close();
        QVERIFY(!HayInstanciaPrevia(programa));
        QLockFile otro(Cerrojo(programa));
        QVERIFY(!otro.tryLock(0)); // and now this copy holds it
    }

    void existeFichero_data() {
        QTest::addColumn<QString>("nombre");
        QTest::addColumn<bool>("crear");
        QTest::addColumn<bool>("comoCarpeta");
        QTest::addColumn<bool>("existe");
        QTest::newRow("plain file") << "bandera.gif" << true << false << true;
        QTest::newRow("missing file") << "no_hay.gif" << false << false << false;
        QTest::newRow("directory") << "fotos" << true << true << false;
        QTest::newRow("non-ASCII name") << "España ñ.gif" << true << false << true;
    }
    void existeFichero() {
        QFETCH(QString, nombre);
        QFETCH(bool, crear);
        QFETCH(bool, comoCarpeta);
        QFETCH(bool, existe);
        const QString ruta = dir.filePath(nombre);
        if (crear && comoCarpeta)
            QVERIFY(QDir(dir.path()).mkpath(nombre));
        if (crear && !comoCarpeta) {
            QFile f(ruta);
            QVERIFY(f.open(QIODevice::WriteOnly));
        }
        QCOMPARE(ExisteFichero(ruta), existe ? int(ruta.size()) : 0);
    }

    void existeFicheroSinRuta() { QCOMPARE(ExisteFichero(QString()), 0); }

    void directorioPrograma() {
        QCOMPARE(DirectorioPrograma(), QCoreApplication::applicationDirPath());
        QVERIFY(QFileInfo(DirectorioPrograma()).isDir());
        QVERIFY(!DirectorioPrograma().endsWith(QLatin1Char('/')));
    }

    void hoy() {
        const QDate antes = QDate::currentDate();
        const QDate dia = Hoy();
        const QDate despues = QDate::currentDate();
        QVERIFY(dia == antes || dia == despues);
    }
};

QTEST_GUILESS_MAIN(TstSistema)
#include "tst_sistema.moc"
