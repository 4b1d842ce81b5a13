#pragma once

/// Loads gKunde with the customer of a booked document, all of it empty when there is none. The number that
/// documents keep is the key of `Kunden`, not the number that people see.
void LoadBelegKunde(int KundenID);
