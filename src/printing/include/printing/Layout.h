#pragma once

#include <printing/BelegDaten.h>

#include <optional>

class PropertiesList;
class VSPrinter;

/// The layouts of the documents. Each puts a whole document on `printer`, from StartDoc to EndDoc, as
/// `vorlage` tells; choosing the printer before and PrintDoc behind are the caller's. A key that the template
/// lacks leaves its block out. Prices, texts and rows follow the settings of the session.
///
///     VSPrinter printer;
///     printer.Device(gBonDrucker);
///     RenderBon(printer, vorlage, bon);
///     printer.PrintDoc();

void RenderBon(VSPrinter& printer, const PropertiesList& vorlage, const BonDaten& bon);
void RenderGutschein(VSPrinter& printer, const PropertiesList& vorlage, const GutscheinDaten& gutschein);
/// `schlussText` replaces the closing text of the template; its macros are replaced as well. `docName` is
/// what the print queue calls the document.
void RenderFormular(VSPrinter& printer, const PropertiesList& vorlage, const FormularDaten& formular,
                    const QString& docName, const std::optional<QString>& schlussText = {});
