#pragma once

#include <templates/TemplateKind.h>

class PropertiesList;
class VSPrinter;

/// Lays out a made-up document of this kind, from StartDoc to EndDoc, so that a template can be seen without
/// a booking. Header lines and tax number are those of the shop; where the session knows none, a made-up
/// shop's.
void RenderSample(VSPrinter& printer, const PropertiesList& vorlage, TemplateKind kind);
