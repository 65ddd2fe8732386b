#pragma once

namespace Pantalla {

/// Qt's own texts (a text box's context menu, the buttons of a question, a date control's
/// month names) in Spanish, the screens' language: Qt's translation qtbase_es from the
/// system's folder of Qt translations, installed into the application. False, with one line
/// on stderr that says what is missing, when it isn't there: the texts then stay in English.
bool CargarTraduccionQt();

} // namespace Pantalla
