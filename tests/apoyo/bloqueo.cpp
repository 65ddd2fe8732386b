#include "bloqueo.h"

#include "platform/datos/errorbd.h"

#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <sqlite3.h>
#include <thread>

using namespace ADODB;

namespace {

sqlite3 *Manejador(const QSqlDatabase &base) {
    const QVariant handle = base.driver() ? base.driver()->handle() : QVariant();
    if (qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3 *const *>(handle.constData());
}

constexpr int pausaMs = 2;
constexpr int esperaMaximaMs = 60000;

} // namespace

VigiaBloqueo::VigiaBloqueo(ADODB::Connection &conexion) : programa(conexion) {
    if (sqlite3 *db = Manejador(programa.Base())) {
        sqlite = true;
        QSqlQuery q(programa.Base());
        if (q.exec(QStringLiteral("pragma busy_timeout")) && q.next())
            esperaPrevia = q.value(0).toInt();
        sqlite3_busy_handler(db, &VigiaBloqueo::Ocupada, this);
    }
}

VigiaBloqueo::~VigiaBloqueo() {
    if (sqlite3 *db = sqlite ? Manejador(programa.Base()) : nullptr)
        sqlite3_busy_timeout(db, esperaPrevia);
}

int VigiaBloqueo::Ocupada(void *vigia, int intentos) {
    auto &v = *static_cast<VigiaBloqueo *>(vigia);
    if (intentos == 0) {
        const std::lock_guard<std::mutex> bloqueo(v.cerrojo);
        v.esperando = true;
        v.aviso.notify_all();
    }
    if (intentos * pausaMs >= esperaMaximaMs)
        return 0; // SQLITE_BUSY: the program's statement fails, and so does the test
    sqlite3_sleep(pausaMs);
    return 1;
}

bool VigiaBloqueo::Esperar(ADODB::Connection &otra, std::chrono::milliseconds limite) {
    if (sqlite) {
        std::unique_lock<std::mutex> bloqueo(cerrojo);
        return aviso.wait_for(bloqueo, limite, [this] { return esperando; });
    }
    // The server keeps what each session waits on; the test's database is its own, so any
    // session of it that waits for a lock is the program's.
    const auto fin = std::chrono::steady_clock::now() + limite;
    QSqlQuery q(otra.Base());
    while (std::chrono::steady_clock::now() < fin) {
        if (!q.exec(QStringLiteral("select count(*) from pg_stat_activity where datname = "
                                   "current_database() and wait_event_type = 'Lock'")))
            throw ErrorBD(q.lastError().text());
        if (q.next() && q.value(0).toInt() > 0)
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(pausaMs));
    }
    return false;
}
