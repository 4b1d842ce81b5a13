CREATE TABLE "Artikel" (
  "Nummer" TEXT COLLATE GERMAN CHECK(length("Nummer")<=30),
  "Name" TEXT COLLATE GERMAN CHECK(length("Name")<=100),
  "LangText" TEXT COLLATE GERMAN,
  "WarenGruppe" TEXT COLLATE GERMAN CHECK(length("WarenGruppe")<=50),
  "Zusatz1" TEXT COLLATE GERMAN CHECK(length("Zusatz1")<=20),
  "Zusatz2" TEXT COLLATE GERMAN CHECK(length("Zusatz2")<=20),
  "Menge" REAL,
  "Einheit" TEXT COLLATE GERMAN CHECK(length("Einheit")<=20),
  "SteuerSatz" REAL,
  "EKPreis" INTEGER,
  "VKPreis" INTEGER,
  "VKPreis2" INTEGER,
  "VKPreis3" INTEGER,
  "SollBestand" REAL,
  "IstBestand" REAL,
  "Aktiv" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "LagerAktiv" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "Rabatt" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "PreisAngabe" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "VolumenAngabe" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "SNAngabe" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "FreiFeld" TEXT COLLATE GERMAN CHECK(length("FreiFeld")<=50)
) STRICT;
CREATE UNIQUE INDEX "Artikel.Nummer" ON "Artikel" ("Nummer");
CREATE INDEX "Artikel.Name" ON "Artikel" ("Name");
CREATE INDEX "Artikel.WarenGruppe" ON "Artikel" ("WarenGruppe");
CREATE INDEX "Artikel.SteuerSatz" ON "Artikel" ("SteuerSatz");

CREATE TABLE "ArtikelLieferanten" (
  "ArtikelNummer" TEXT COLLATE GERMAN CHECK(length("ArtikelNummer")<=30),
  "LieferantID" INTEGER,
  "BestellNummer" TEXT COLLATE GERMAN CHECK(length("BestellNummer")<=50),
  "EKPreis" INTEGER
) STRICT;
CREATE INDEX "ArtikelLieferanten.ArtikelNummer" ON "ArtikelLieferanten" ("ArtikelNummer");
CREATE INDEX "ArtikelLieferanten.LieferantID" ON "ArtikelLieferanten" ("LieferantID");
CREATE INDEX "ArtikelLieferanten.BestellNummer" ON "ArtikelLieferanten" ("BestellNummer");

CREATE TABLE "ArtikelSerienNummern" (
  "ArtikelNummer" TEXT COLLATE GERMAN CHECK(length("ArtikelNummer")<=30),
  "SNNummer" TEXT COLLATE GERMAN CHECK(length("SNNummer")<=50),
  "RechnungID" INTEGER,
  "VKDatum" TEXT COLLATE GERMAN CHECK(length("VKDatum")<=30),
  "EKDatum" TEXT COLLATE GERMAN CHECK(length("EKDatum")<=30)
) STRICT;
CREATE INDEX "ArtikelSerienNummern.ArtikelNummer" ON "ArtikelSerienNummern" ("ArtikelNummer");
CREATE INDEX "ArtikelSerienNummern.SNNummer" ON "ArtikelSerienNummern" ("SNNummer");
CREATE INDEX "ArtikelSerienNummern.RechnungID" ON "ArtikelSerienNummern" ("RechnungID");

CREATE TABLE "AktionsPreise" (
  "ArtikelNummer" TEXT COLLATE GERMAN CHECK(length("ArtikelNummer")<=30),
  "ArtikelName" TEXT COLLATE GERMAN CHECK(length("ArtikelName")<=100),
  "VKPreis" INTEGER,
  "Von" REAL,
  "Bis" REAL,
  "AktionsPreis" INTEGER
) STRICT;
CREATE INDEX "AktionsPreise.ArtikelNummer" ON "AktionsPreise" ("ArtikelNummer");
CREATE INDEX "AktionsPreise.Bis" ON "AktionsPreise" ("Bis");

CREATE TABLE "VerbundArtikel" (
  "SourceArtikelNummer" TEXT COLLATE GERMAN CHECK(length("SourceArtikelNummer")<=30),
  "DestArtikelNummer" TEXT COLLATE GERMAN CHECK(length("DestArtikelNummer")<=30),
  "ArtikelName" TEXT COLLATE GERMAN CHECK(length("ArtikelName")<=100),
  "Anzahl" INTEGER
) STRICT;
CREATE INDEX "VerbundArtikel.SourceArtikelNummer" ON "VerbundArtikel" ("SourceArtikelNummer");
CREATE INDEX "VerbundArtikel.DestArtikelNummer" ON "VerbundArtikel" ("DestArtikelNummer");

CREATE TABLE "Lieferanten" (
  "LieferantID" INTEGER PRIMARY KEY AUTOINCREMENT,
  "KundenNummer" TEXT COLLATE GERMAN CHECK(length("KundenNummer")<=30),
  "Anrede" TEXT COLLATE GERMAN CHECK(length("Anrede")<=30),
  "Name_1" TEXT COLLATE GERMAN CHECK(length("Name_1")<=50),
  "Name_2" TEXT COLLATE GERMAN CHECK(length("Name_2")<=50),
  "Strasse" TEXT COLLATE GERMAN CHECK(length("Strasse")<=100),
  "PLZ" TEXT COLLATE GERMAN CHECK(length("PLZ")<=5),
  "Ort" TEXT COLLATE GERMAN CHECK(length("Ort")<=100),
  "Telefon" TEXT COLLATE GERMAN CHECK(length("Telefon")<=20),
  "Telefax" TEXT COLLATE GERMAN CHECK(length("Telefax")<=20),
  "EMail" TEXT COLLATE GERMAN CHECK(length("EMail")<=255),
  "Internet" TEXT COLLATE GERMAN CHECK(length("Internet")<=255),
  "Land" TEXT COLLATE GERMAN CHECK(length("Land")<=100),
  "Bank" TEXT COLLATE GERMAN CHECK(length("Bank")<=100),
  "BLZ" TEXT COLLATE GERMAN CHECK(length("BLZ")<=20),
  "Konto" TEXT COLLATE GERMAN CHECK(length("Konto")<=20)
) STRICT;
CREATE INDEX "Lieferanten.Name_1" ON "Lieferanten" ("Name_1");

CREATE TABLE "Kunden" (
  "KundenID" INTEGER PRIMARY KEY AUTOINCREMENT,
  "KundenNummer" TEXT COLLATE GERMAN CHECK(length("KundenNummer")<=30),
  "Anrede" TEXT COLLATE GERMAN CHECK(length("Anrede")<=30),
  "Name_1" TEXT COLLATE GERMAN CHECK(length("Name_1")<=50),
  "Name_2" TEXT COLLATE GERMAN CHECK(length("Name_2")<=50),
  "Strasse" TEXT COLLATE GERMAN CHECK(length("Strasse")<=100),
  "PLZ" TEXT COLLATE GERMAN CHECK(length("PLZ")<=10),
  "Ort" TEXT COLLATE GERMAN CHECK(length("Ort")<=100),
  "Land" TEXT COLLATE GERMAN CHECK(length("Land")<=100),
  "Telefon" TEXT COLLATE GERMAN CHECK(length("Telefon")<=30),
  "Telefax" TEXT COLLATE GERMAN CHECK(length("Telefax")<=30),
  "Mobil" TEXT COLLATE GERMAN CHECK(length("Mobil")<=30),
  "EMail" TEXT COLLATE GERMAN CHECK(length("EMail")<=255),
  "Rabatt" REAL,
  "PreisGruppe" INTEGER,
  "EKPreis" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "Gesperrt" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "FreiFeld" TEXT COLLATE GERMAN CHECK(length("FreiFeld")<=100),
  "LangText" TEXT COLLATE GERMAN
) STRICT;
CREATE INDEX "Kunden.KundenNummer" ON "Kunden" ("KundenNummer");
CREATE INDEX "Kunden.Name_1" ON "Kunden" ("Name_1");
CREATE INDEX "Kunden.Ort" ON "Kunden" ("Ort");

CREATE TABLE "KundenKFZInfo" (
  "ID" INTEGER PRIMARY KEY AUTOINCREMENT,
  "KundenID" INTEGER,
  "Kennzeichen" TEXT COLLATE GERMAN CHECK(length("Kennzeichen")<=15),
  "Halter" TEXT COLLATE GERMAN,
  "TUEV" TEXT COLLATE GERMAN CHECK(length("TUEV")<=7),
  "AU" TEXT COLLATE GERMAN CHECK(length("AU")<=7),
  "Schluessel2" TEXT COLLATE GERMAN CHECK(length("Schluessel2")<=4),
  "Schluessel3" TEXT COLLATE GERMAN CHECK(length("Schluessel3")<=3),
  "Marke" TEXT COLLATE GERMAN CHECK(length("Marke")<=20),
  "Typ" TEXT COLLATE GERMAN CHECK(length("Typ")<=20),
  "FahrgestellNr" TEXT COLLATE GERMAN CHECK(length("FahrgestellNr")<=17),
  "KW" TEXT COLLATE GERMAN CHECK(length("KW")<=7),
  "Hubraum" TEXT COLLATE GERMAN CHECK(length("Hubraum")<=4),
  "Erstzulassung" REAL
) STRICT;
CREATE INDEX "KundenKFZInfo.KundenID" ON "KundenKFZInfo" ("KundenID");

CREATE TABLE "Personal" (
  "ID" INTEGER PRIMARY KEY AUTOINCREMENT,
  "Name" TEXT COLLATE GERMAN CHECK(length("Name")<=50),
  "Vorname" TEXT COLLATE GERMAN CHECK(length("Vorname")<=50),
  "Strasse" TEXT COLLATE GERMAN CHECK(length("Strasse")<=100),
  "PLZ" TEXT COLLATE GERMAN CHECK(length("PLZ")<=10),
  "Ort" TEXT COLLATE GERMAN CHECK(length("Ort")<=100),
  "Telefon" TEXT COLLATE GERMAN CHECK(length("Telefon")<=30),
  "Mobil" TEXT COLLATE GERMAN CHECK(length("Mobil")<=30),
  "EMail" TEXT COLLATE GERMAN CHECK(length("EMail")<=255),
  "PIN" TEXT COLLATE GERMAN CHECK(length("PIN")<=20),
  "Gesperrt" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "R_Artikel" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "R_Kunden" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "R_Personal" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "R_Berichte" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "R_Rabatt" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "R_Setup" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "R_KassenAbschluss" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "R_RechnungEdit" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "R_SystemExit" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0
) STRICT;
CREATE INDEX "Personal.Name" ON "Personal" ("Name");

CREATE TABLE "ShortCut" (
  "GroupNumber" INTEGER,
  "Number" INTEGER,
  "Name" TEXT COLLATE GERMAN CHECK(length("Name")<=100),
  "ArtikelNummer" TEXT COLLATE GERMAN CHECK(length("ArtikelNummer")<=30)
) STRICT;
CREATE INDEX "ShortCut.GroupNumber_Number" ON "ShortCut" ("GroupNumber", "Number");
CREATE INDEX "ShortCut.ArtikelNummer" ON "ShortCut" ("ArtikelNummer");

CREATE TABLE "ShortCutGroup" (
  "GroupNumber" INTEGER,
  "GroupName" TEXT COLLATE GERMAN CHECK(length("GroupName")<=50)
) STRICT;
CREATE INDEX "ShortCutGroup.GroupNumber" ON "ShortCutGroup" ("GroupNumber");

CREATE TABLE "Colors" (
  "ID" INTEGER PRIMARY KEY AUTOINCREMENT,
  "Name" TEXT COLLATE GERMAN CHECK(length("Name")<=50),
  "BC" INTEGER,
  "PBC" INTEGER,
  "TBC" INTEGER,
  "FC" INTEGER,
  "Aktiv" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0
) STRICT;

CREATE TABLE "Bestellung" (
  "ID" INTEGER PRIMARY KEY AUTOINCREMENT,
  "Maschine" TEXT COLLATE GERMAN CHECK(length("Maschine")<=50),
  "Datum" REAL,
  "Zeit" REAL,
  "KundenNummer" INTEGER,
  "PersonalNummer" INTEGER,
  "ArtikelNummer" TEXT COLLATE GERMAN CHECK(length("ArtikelNummer")<=30),
  "ArtikelName" TEXT COLLATE GERMAN CHECK(length("ArtikelName")<=100),
  "Buchungs_Menge" REAL,
  "Menge" REAL,
  "Einheit" TEXT COLLATE GERMAN CHECK(length("Einheit")<=20),
  "EKPreis" INTEGER,
  "VKPreis" INTEGER,
  "VKPreis_Rabatt" INTEGER,
  "SteuerSatz" REAL,
  "IsRabatt" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "SNNummer" TEXT COLLATE GERMAN CHECK(length("SNNummer")<=50),
  "WarenGruppe" TEXT COLLATE GERMAN CHECK(length("WarenGruppe")<=50),
  "LangText" TEXT COLLATE GERMAN,
  "Zusatz1" TEXT COLLATE GERMAN CHECK(length("Zusatz1")<=20),
  "Zusatz2" TEXT COLLATE GERMAN CHECK(length("Zusatz2")<=20),
  "PreisInfo" TEXT COLLATE GERMAN CHECK(length("PreisInfo")<=50)
) STRICT;
CREATE INDEX "Bestellung.Maschine" ON "Bestellung" ("Maschine");
CREATE INDEX "Bestellung.ArtikelNummer" ON "Bestellung" ("ArtikelNummer");

CREATE TABLE "TMPOrder" (
  "Maschine" TEXT COLLATE GERMAN CHECK(length("Maschine")<=50),
  "Datum" REAL,
  "Zeit" REAL,
  "KundenNummer" INTEGER,
  "PersonalNummer" INTEGER,
  "ArtikelNummer" TEXT COLLATE GERMAN CHECK(length("ArtikelNummer")<=30),
  "ArtikelName" TEXT COLLATE GERMAN CHECK(length("ArtikelName")<=100),
  "Buchungs_Menge" REAL,
  "Menge" REAL,
  "Einheit" TEXT COLLATE GERMAN CHECK(length("Einheit")<=20),
  "EKPreis" INTEGER,
  "VKPreis" INTEGER,
  "VKPreis_Rabatt" INTEGER,
  "SteuerSatz" REAL,
  "IsRabatt" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "SNNummer" TEXT COLLATE GERMAN CHECK(length("SNNummer")<=50),
  "WarenGruppe" TEXT COLLATE GERMAN CHECK(length("WarenGruppe")<=50),
  "PreisInfo" TEXT COLLATE GERMAN CHECK(length("PreisInfo")<=50),
  "LangText" TEXT COLLATE GERMAN,
  "Zusatz1" TEXT COLLATE GERMAN CHECK(length("Zusatz1")<=20),
  "Zusatz2" TEXT COLLATE GERMAN CHECK(length("Zusatz2")<=20)
) STRICT;
CREATE INDEX "TMPOrder.Maschine" ON "TMPOrder" ("Maschine");

CREATE TABLE "KundenKontoOrder" (
  "Datum" REAL,
  "Zeit" REAL,
  "KundenNummer" INTEGER,
  "PersonalNummer" INTEGER,
  "ArtikelNummer" TEXT COLLATE GERMAN CHECK(length("ArtikelNummer")<=100),
  "ArtikelName" TEXT COLLATE GERMAN CHECK(length("ArtikelName")<=100),
  "Buchungs_Menge" REAL,
  "Menge" REAL,
  "Einheit" TEXT COLLATE GERMAN CHECK(length("Einheit")<=255),
  "EKPreis" INTEGER,
  "VKPreis" INTEGER,
  "VKPreis_Rabatt" INTEGER,
  "SteuerSatz" REAL,
  "IsRabatt" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "SNNummer" TEXT COLLATE GERMAN CHECK(length("SNNummer")<=50),
  "WarenGruppe" TEXT COLLATE GERMAN CHECK(length("WarenGruppe")<=50),
  "Zusatz1" TEXT COLLATE GERMAN CHECK(length("Zusatz1")<=20),
  "Zusatz2" TEXT COLLATE GERMAN CHECK(length("Zusatz2")<=20),
  "LangText" TEXT COLLATE GERMAN,
  "PreisInfo" TEXT COLLATE GERMAN CHECK(length("PreisInfo")<=50)
) STRICT;
CREATE INDEX "KundenKontoOrder.KundenNummer" ON "KundenKontoOrder" ("KundenNummer");

CREATE TABLE "Rechnung" (
  "RechnungID" INTEGER PRIMARY KEY AUTOINCREMENT,
  "Maschine" TEXT COLLATE GERMAN CHECK(length("Maschine")<=50),
  "Datum" REAL,
  "Zeit" REAL,
  "PersonalNummer" INTEGER,
  "KundenNummer" INTEGER,
  "Kunde" TEXT COLLATE GERMAN CHECK(length("Kunde")<=101),
  "ZahlArt" TEXT COLLATE GERMAN CHECK(length("ZahlArt")<=30),
  "Betrag_Gesamt" INTEGER,
  "Betrag_Gegeben" INTEGER,
  "Betrag_Zurueck" INTEGER,
  "KartenTyp" TEXT COLLATE GERMAN CHECK(length("KartenTyp")<=100),
  "Abschluss" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "AbschlussID" INTEGER,
  "UpdateKassenBuch" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "Zusatz" TEXT COLLATE GERMAN
) STRICT;
CREATE INDEX "Rechnung.Maschine_Abschluss" ON "Rechnung" ("Maschine", "Abschluss");
CREATE INDEX "Rechnung.Datum" ON "Rechnung" ("Datum");
CREATE INDEX "Rechnung.KundenNummer" ON "Rechnung" ("KundenNummer");
CREATE INDEX "Rechnung.PersonalNummer" ON "Rechnung" ("PersonalNummer");
CREATE INDEX "Rechnung.AbschlussID" ON "Rechnung" ("AbschlussID");

CREATE TABLE "RechnungsDetail" (
  "RechnungID" INTEGER,
  "Maschine" TEXT COLLATE GERMAN CHECK(length("Maschine")<=50),
  "Datum" REAL,
  "Zeit" REAL,
  "PersonalNummer" INTEGER,
  "KundenNummer" INTEGER,
  "Kunde" TEXT COLLATE GERMAN CHECK(length("Kunde")<=101),
  "ArtikelNummer" TEXT COLLATE GERMAN CHECK(length("ArtikelNummer")<=30),
  "ArtikelName" TEXT COLLATE GERMAN CHECK(length("ArtikelName")<=100),
  "Buchungs_Menge" REAL,
  "Menge" REAL,
  "Einheit" TEXT COLLATE GERMAN CHECK(length("Einheit")<=20),
  "EKPreis" INTEGER,
  "VKPreis_Brutto" INTEGER,
  "VKPreis_Netto" REAL,
  "VKPreisOrg" INTEGER,
  "SteuerSatz" REAL,
  "SNNummer" TEXT COLLATE GERMAN CHECK(length("SNNummer")<=50),
  "WarenGruppe" TEXT COLLATE GERMAN CHECK(length("WarenGruppe")<=50),
  "LangText" TEXT COLLATE GERMAN,
  "Zusatz1" TEXT COLLATE GERMAN CHECK(length("Zusatz1")<=20),
  "Zusatz2" TEXT COLLATE GERMAN CHECK(length("Zusatz2")<=20),
  "PreisInfo" TEXT COLLATE GERMAN CHECK(length("PreisInfo")<=50),
  "BestellNummer" TEXT COLLATE GERMAN CHECK(length("BestellNummer")<=50)
) STRICT;
CREATE INDEX "RechnungsDetail.RechnungID" ON "RechnungsDetail" ("RechnungID");
CREATE INDEX "RechnungsDetail.Datum" ON "RechnungsDetail" ("Datum");
CREATE INDEX "RechnungsDetail.KundenNummer" ON "RechnungsDetail" ("KundenNummer");
CREATE INDEX "RechnungsDetail.ArtikelNummer" ON "RechnungsDetail" ("ArtikelNummer");
CREATE INDEX "RechnungsDetail.SNNummer" ON "RechnungsDetail" ("SNNummer");

CREATE TABLE "Angebote" (
  "AngebotID" INTEGER PRIMARY KEY AUTOINCREMENT,
  "Maschine" TEXT COLLATE GERMAN CHECK(length("Maschine")<=50),
  "Datum" REAL,
  "Zeit" REAL,
  "PersonalNummer" INTEGER,
  "KundenNummer" INTEGER,
  "Kunde" TEXT COLLATE GERMAN CHECK(length("Kunde")<=101),
  "Betrag_Gesamt" INTEGER
) STRICT;
CREATE INDEX "Angebote.Datum" ON "Angebote" ("Datum");
CREATE INDEX "Angebote.KundenNummer" ON "Angebote" ("KundenNummer");

CREATE TABLE "AngebotsDetail" (
  "AngebotID" INTEGER,
  "ArtikelNummer" TEXT COLLATE GERMAN CHECK(length("ArtikelNummer")<=30),
  "ArtikelName" TEXT COLLATE GERMAN CHECK(length("ArtikelName")<=100),
  "Buchungs_Menge" REAL,
  "Menge" REAL,
  "Einheit" TEXT COLLATE GERMAN CHECK(length("Einheit")<=20),
  "VKPreis_Brutto" INTEGER,
  "VKPreis_Netto" REAL,
  "SteuerSatz" REAL,
  "SNNummer" TEXT COLLATE GERMAN CHECK(length("SNNummer")<=50),
  "EKPreis" INTEGER,
  "WarenGruppe" TEXT COLLATE GERMAN CHECK(length("WarenGruppe")<=50),
  "LangText" TEXT COLLATE GERMAN,
  "Zusatz1" TEXT COLLATE GERMAN CHECK(length("Zusatz1")<=20),
  "Zusatz2" TEXT COLLATE GERMAN CHECK(length("Zusatz2")<=20),
  "PreisInfo" TEXT COLLATE GERMAN CHECK(length("PreisInfo")<=50),
  "BestellNummer" TEXT COLLATE GERMAN CHECK(length("BestellNummer")<=50)
) STRICT;
CREATE INDEX "AngebotsDetail.AngebotID" ON "AngebotsDetail" ("AngebotID");

CREATE TABLE "Lieferung" (
  "LieferungID" INTEGER PRIMARY KEY AUTOINCREMENT,
  "Maschine" TEXT COLLATE GERMAN CHECK(length("Maschine")<=50),
  "Datum" REAL,
  "Zeit" REAL,
  "PersonalNummer" INTEGER,
  "KundenNummer" INTEGER,
  "Kunde" TEXT COLLATE GERMAN CHECK(length("Kunde")<=101),
  "Betrag_Gesamt" INTEGER,
  "InRechnung" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "Betrag_Gegeben" INTEGER,
  "Betrag_Zurueck" INTEGER,
  "ZahlArt" TEXT COLLATE GERMAN CHECK(length("ZahlArt")<=30),
  "KartenTyp" TEXT COLLATE GERMAN CHECK(length("KartenTyp")<=100),
  "Abschluss" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "Zusatz" TEXT COLLATE GERMAN
) STRICT;
CREATE INDEX "Lieferung.Datum" ON "Lieferung" ("Datum");
CREATE INDEX "Lieferung.KundenNummer" ON "Lieferung" ("KundenNummer");

CREATE TABLE "LieferungDetail" (
  "LieferungID" INTEGER,
  "ArtikelNummer" TEXT COLLATE GERMAN CHECK(length("ArtikelNummer")<=30),
  "ArtikelName" TEXT COLLATE GERMAN CHECK(length("ArtikelName")<=100),
  "Buchungs_Menge" REAL,
  "Menge" REAL,
  "Einheit" TEXT COLLATE GERMAN CHECK(length("Einheit")<=20),
  "VKPreis_Brutto" INTEGER,
  "VKPreis_Netto" REAL,
  "SteuerSatz" REAL,
  "SNNummer" TEXT COLLATE GERMAN CHECK(length("SNNummer")<=50),
  "EKPreis" INTEGER,
  "WarenGruppe" TEXT COLLATE GERMAN CHECK(length("WarenGruppe")<=50),
  "LangText" TEXT COLLATE GERMAN,
  "Zusatz1" TEXT COLLATE GERMAN CHECK(length("Zusatz1")<=20),
  "Zusatz2" TEXT COLLATE GERMAN CHECK(length("Zusatz2")<=20),
  "PreisInfo" TEXT COLLATE GERMAN CHECK(length("PreisInfo")<=50),
  "BestellNummer" TEXT COLLATE GERMAN CHECK(length("BestellNummer")<=50)
) STRICT;
CREATE INDEX "LieferungDetail.LieferungID" ON "LieferungDetail" ("LieferungID");

CREATE TABLE "Gutscheine" (
  "GutscheinID" INTEGER PRIMARY KEY AUTOINCREMENT,
  "Datum" REAL,
  "Zeit" REAL,
  "Betrag" INTEGER,
  "SteuerSatz" REAL,
  "WarenGruppe" TEXT COLLATE GERMAN CHECK(length("WarenGruppe")<=50),
  "Name" TEXT COLLATE GERMAN CHECK(length("Name")<=100)
) STRICT;

CREATE TABLE "Stornos" (
  "Maschine" TEXT COLLATE GERMAN CHECK(length("Maschine")<=50),
  "Datum" REAL,
  "Zeit" REAL,
  "PersonalNummer" INTEGER,
  "PersonalName" TEXT COLLATE GERMAN CHECK(length("PersonalName")<=100),
  "ArtikelNummer" TEXT COLLATE GERMAN CHECK(length("ArtikelNummer")<=30),
  "ArtikelName" TEXT COLLATE GERMAN CHECK(length("ArtikelName")<=100),
  "WarenGruppe" TEXT COLLATE GERMAN CHECK(length("WarenGruppe")<=50),
  "Buchungs_Menge" REAL,
  "Menge" REAL,
  "Einheit" TEXT COLLATE GERMAN CHECK(length("Einheit")<=20),
  "Abschluss" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "AbschlussID" INTEGER
) STRICT;
CREATE INDEX "Stornos.Maschine_Abschluss" ON "Stornos" ("Maschine", "Abschluss");
CREATE INDEX "Stornos.AbschlussID" ON "Stornos" ("AbschlussID");

CREATE TABLE "BuchungsMarke" (
  "Maschine" TEXT COLLATE GERMAN CHECK(length("Maschine")<=50),
  "RechnungID" INTEGER,
  "Datum" REAL,
  "Zeit" REAL,
  "PersonalNummer" INTEGER,
  "KundenNummer" INTEGER,
  "Kunde" TEXT COLLATE GERMAN CHECK(length("Kunde")<=101),
  "ZahlArt" TEXT COLLATE GERMAN CHECK(length("ZahlArt")<=30),
  "Betrag_Gesamt" INTEGER,
  "Betrag_Gegeben" INTEGER,
  "Betrag_Zurueck" INTEGER,
  "KartenTyp" TEXT COLLATE GERMAN CHECK(length("KartenTyp")<=100),
  "IsLieferschein" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0,
  "LetzteZeile" INTEGER,
  "Zeilen" INTEGER,
  "Bestand" INTEGER,
  "Unvollstaendig" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0
) STRICT;

CREATE TABLE "KassenBestand" (
  "Maschine" TEXT COLLATE GERMAN CHECK(length("Maschine")<=50),
  "Bestand" INTEGER
) STRICT;
CREATE INDEX "KassenBestand.Maschine" ON "KassenBestand" ("Maschine");

CREATE TABLE "KassenAbschluss" (
  "AbschlussID" INTEGER PRIMARY KEY AUTOINCREMENT,
  "Maschine" TEXT COLLATE GERMAN CHECK(length("Maschine")<=50),
  "Datum" REAL,
  "Zeit" REAL,
  "PersonalNummer" INTEGER,
  "PersonalName" TEXT COLLATE GERMAN CHECK(length("PersonalName")<=100),
  "WechselGeld" INTEGER,
  "KassenBestand" INTEGER,
  "Abschluss" INTEGER NOT NULL ON CONFLICT REPLACE DEFAULT 0
) STRICT;
CREATE INDEX "KassenAbschluss.Datum" ON "KassenAbschluss" ("Datum");

