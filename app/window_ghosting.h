#pragma once

/// Keeps Windows from greying the window out as "not responding" while a search for network modules
/// blocks it for seconds. It shows the wait cursor, as elsewhere. For the whole process, and for
/// good; does nothing on other systems.
void switchWindowGhostingOff();
