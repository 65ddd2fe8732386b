#pragma once

#include <utility>

/// Inserts `valor` under `clave` only when the hash has no such key, as std::map's
/// try_emplace does: gives where the key's value is and whether it was inserted now.
template <class Hash, class Clave, class Valor>
std::pair<typename Hash::iterator, bool> InsertarNueva(Hash &hash, const Clave &clave,
                                                       Valor &&valor) {
    const auto sitio = hash.find(clave);
    if (sitio != hash.end())
        return {sitio, false};
    return {hash.insert(clave, std::forward<Valor>(valor)), true};
}
