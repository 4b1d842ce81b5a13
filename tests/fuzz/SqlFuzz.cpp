#include "../jet/Printer.h"
#include "../jet/Shop.h"
#include "Fuzz.h"

#include <text/RuntimeError.h>

namespace {

const ShopCatalogue shop;
const jet::Translator translator(shop, jet::sqliteEmitter());
const jet::Translator postgres(shop, jet::postgresEmitter());

std::shared_ptr<const jet::Statement> translated(const jet::Translator& engine, const QString& text) {
    const auto statement = engine.translate(text);
    jet::Lifted lifted;
    jet::lift(text, lifted);
    for (const jet::Parameter& p : statement->parameters) {
        try {
            static_cast<void>(jet::encode(p, lifted.literals));
        } catch (const RuntimeError&) { // a literal without the meaning that its column asks for
        }
    }
    return statement;
}

} // namespace

// Any text is translated for both engines or refused with an error of the dialect; what translates also
// prints, and what is printed translates to the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    std::shared_ptr<const jet::Statement> statement;
    try {
        statement = translated(translator, text);
        static_cast<void>(translated(postgres, text));
    } catch (const RuntimeError&) {
    }
    if (!statement) return 0;
    QString again;
    try {
        again = jet::printed(text);
        fuzz::require(translator.translate(again)->sql == statement->sql);
    } catch (const RuntimeError& e) {
        fuzz::require(e.Number != 3075); // what was printed must at least be read
    }
    return 0;
}
