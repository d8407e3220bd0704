"""Which sources are whose, and where their tests are."""

# A room's tests are those that ctest runs in tests/<room>.
ROOMS = {
    "scan": ("src/scan",),
    "files": ("src/files",),
    "settings": ("src/settings",),
    "net": ("src/net",),
    "terminal": tuple("src/terminal/" + room for room in (
        "markup", "core", "layout", "speech", "reading", "session", "view")),
    "automation": ("src/automation/core", "src/automation/editors"),
    "script": ("src/script",),
    "dialogs": ("src/dialogs",),
    "app": ("src/app",),
}
