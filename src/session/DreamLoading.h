#pragma once
// The dream load sequence over the transfers of the data manager.

// Once per frame: finishes at most one dream download that is done: unpacks, loads, tells the server.
void UpdateTransfers();
