// The program's entry: a second copy ends at once, silently, without touching the database.
#include "platform/datos/sistema.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

class TstMain : public QObject {
    Q_OBJECT
private slots:
    void segundaInstancia() {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        // Locks live in the runtime directory: a private one keeps this test to itself.
        qputenv("XDG_RUNTIME_DIR", dir.path().toUtf8());
        const QString ruta = dir.filePath(QStringLiteral("suite.sqlite"));
        QProcessEnvironment entorno = QProcessEnvironment::systemEnvironment();
        entorno.insert(QStringLiteral("TARIFAS_DB"), QStringLiteral("sqlite:") + ruta);
        entorno.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        entorno.insert(QStringLiteral("XDG_DATA_HOME"), dir.filePath(QStringLiteral("datos")));

        // This test process is the copy that runs; the program started now is the second.
        QVERIFY(!HayInstanciaPrevia(QStringLiteral("tarifas")));
        QProcess segunda;
        segunda.setProcessEnvironment(entorno);
        segunda.start(QStringLiteral(TARIFAS_EXE), {});
        QVERIFY(segunda.waitForFinished(30000));
        QCOMPARE(segunda.exitStatus(), QProcess::NormalExit);
        QCOMPARE(segunda.exitCode(), 0);
        QCOMPARE(segunda.readAllStandardError(), QByteArray());
        QVERIFY(!QFile::exists(ruta));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("datos"))));
    }
};

QTEST_GUILESS_MAIN(TstMain)
#include "tst_main.moc"
