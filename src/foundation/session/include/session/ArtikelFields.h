#pragma once

#include <session/gArtikel.h>
#include <store/Fields.h>

/// All of a row of `Artikel`, in the order in which a new article is written.
[[nodiscard]] const Fields<ArtikelRecord>& ArtikelFields();
