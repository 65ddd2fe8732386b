#pragma once

#include <QStringView>
#include <QtGlobal>
#include <optional>

/// The code of a list or of a product read from its text, as the editor's labels, the grids
/// and the database's texts hold it: decimal digits, perhaps a minus sign in front, at most 18
/// of them (every such number fits in 64 bits). Anything else (an empty text, spaces, a plus
/// sign, a decimal point, letters) is no code, and no statement gets it.
std::optional<qint64> CodigoDeTexto(QStringView texto);
