// Where a benchmark's step spends its time on SQLite: each statement timed by SQLite itself.
#pragma once

#include <QElapsedTimer>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QVariant>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <sqlite3.h>
#include <string>
#include <utility>
#include <vector>

namespace {

/// Each statement SQLite ran while it was on, with its time: where a step's time goes.
struct Perfil {
    std::vector<std::pair<std::string, double>> pasos;

    static int Anotar(unsigned tipo, void *yo, void *sentencia, void *ns) {
        if (tipo == SQLITE_TRACE_PROFILE) {
            const char *texto = sqlite3_sql(static_cast<sqlite3_stmt *>(sentencia));
            static_cast<Perfil *>(yo)->pasos.emplace_back(
                texto ? std::string(texto).substr(0, 90) : std::string("?"),
                double(*static_cast<sqlite3_int64 *>(ns)) / 1e6);
        }
        return 0;
    }
};

/// Runs `paso` with every statement of `base` timed by SQLite itself, and prints those that
/// took 1 ms or more, with the whole.
inline void Desglosar(QSqlDatabase base, const char *que, const std::function<void()> &paso) {
    const QVariant manejador = base.driver()->handle();
    sqlite3 *db = *static_cast<sqlite3 *const *>(manejador.constData());
    Perfil perfil;
    sqlite3_trace_v2(db, SQLITE_TRACE_PROFILE, &Perfil::Anotar, &perfil);
    QElapsedTimer reloj;
    reloj.start();
    paso();
    const double total = double(reloj.nsecsElapsed()) / 1e6;
    sqlite3_trace_v2(db, 0, nullptr, nullptr);
    // Statements of the same text (a batch run again and again) are summed, in order of first run.
    std::vector<std::pair<std::string, std::pair<double, int>>> porTexto;
    double sentencias = 0;
    for (const auto &[texto, ms] : perfil.pasos) {
        sentencias += ms;
        auto i = std::find_if(porTexto.begin(), porTexto.end(),
                              [&](const auto &p) { return p.first == texto; });
        if (i == porTexto.end())
            i = porTexto.insert(porTexto.end(), {texto, {0.0, 0}});
        i->second.first += ms;
        ++i->second.second;
    }
    std::printf("  where the time goes, %s (%.1f ms):\n", que, total);
    for (const auto &[texto, suma] : porTexto)
        if (suma.first >= 1)
            std::printf("    %8.1f ms  %5dx  %s\n", suma.first, suma.second, texto.c_str());
    std::printf("    %8.1f ms  outside SQLite's statements\n", total - sentencias);
}

} // namespace
