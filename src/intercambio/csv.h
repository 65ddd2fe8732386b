#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

/// A spreadsheet's lines as text, the way shops pass price lists around: a header line that
/// names the columns, then one line per row.
///
/// Writing: UTF-8 with a byte-order mark (the spreadsheet programs of a Spanish system read it
/// right then), fields between `;`, a field between quotes only where it needs them (it holds
/// the separator, a quote or a line break), CRLF at each line's end.
class EscritorCsv {
  public:
    explicit EscritorCsv(QIODevice &dispositivo, char separadorCampos = ';');
    /// One line; false when the device refused the bytes (a full disk).
    bool Linea(const QStringList &campos);

  private:
    QIODevice &destino;
    char separador;
    QByteArray linea;
};

/// One line of a file, with the line of the file it starts on (the header is line 1).
struct LineaCsv {
    int numero = 0;
    QStringList campos;
};

/// A file read whole. `error` is empty when it could be read; otherwise it says, in the
/// operator's words, why not (empty, not text, only a header…), and nothing else is set.
struct FicheroCsv {
    QString error;
    char separador = ';';
    bool windows1252 = false; ///< the file was not valid UTF-8 and was read as Windows-1252
    QStringList cabecera;
    QList<LineaCsv> lineas;
};

/// Reads the bytes of a CSV file: UTF-8 with or without a byte-order mark, or Windows-1252
/// when they are not valid UTF-8; the separator (`;`, `,` or a tab) is the one the header line
/// uses most. Blank lines are passed over (their numbers still count); spaces around a bare
/// field are trimmed. Quotes as RFC 4180 has them: a quote inside a bare field, or one never
/// closed, refuses the whole file with its line, as no line after it can be trusted.
/// With `leerColumna`, only the columns whose header name (trimmed) it accepts are read as
/// text; the fields of the others are left empty, though still counted: an import reads three
/// columns of a spreadsheet's seven, and a big file spends its time making texts.
FicheroCsv LeerCsv(const QByteArray &datos,
                   const std::function<bool(const QString &)> &leerColumna = {});

/// Windows-1252's text of `bytes` (the code page of the spreadsheets of older Spanish
/// systems): Latin-1 but for 0x80–0x9F, where it keeps the euro sign, the typographic quotes
/// and dashes. Its five unused bytes stay as the control characters of the same number.
QString DesdeWindows1252(QByteArrayView bytes);
