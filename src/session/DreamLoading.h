#pragma once
// The dream load sequence over the transfers of the data manager.

// Once per frame: finishes at most one dream download that is done, the newest first: unpacks and loads it and tells
// the server; a failure asks the player, with a modal box, whether to go back. Main thread.
void UpdateTransfers();
