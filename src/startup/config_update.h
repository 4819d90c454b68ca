// Bringing in the technician's settings: from the cloud area, or from a web address.
#pragma once

// Fetches the set from the cloud, unpacks it over the application folder, and rewrites tasks and Run value. The time
// of the last maintenance is carried across.
void PullCloudConfig();
// The scheduled update: from the cloud when a cloud user is set, otherwise from the configured web address.
void ConfigUpdate();
