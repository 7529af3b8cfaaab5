// What takes monitored-printer records away: those of printers that are gone, and single ones.
#pragma once

namespace vgl {

// Sweeps both branches. A printer record is dead when it has no readable name or an empty one, when
// its printer doesn't open (for whatever reason, an installer at work included), or has no driver
// or print processor. Of two dead ones that stand next to each other the second waits for the next
// sweep. 0 when it came to its end, -1 when a branch doesn't open: what comes behind it isn't
// swept.
//
// Beware: where the branch of the port records is there, and has not more of them than the number
// at which the sweep of the printer records ended, the sweep of the port records doesn't end by
// itself.
int PurgeTargetRecords();

// Marks a record as being on its way out ("Setting" 255) and deletes it. 0, or -1 when it doesn't
// open. A null or empty path, which would be all of the user's registry, is refused likewise.
int MarkTargetDeleted(const char16_t* keyPath);

// Deletes a key below HKEY_CURRENT_USER with everything below it. 0, or -1 when something could not
// be opened or deleted; what was deleted until then is gone. A null or empty path is refused.
int DeleteKeyTree(const char16_t* keyPath);

}  // namespace vgl
