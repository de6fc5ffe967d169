#pragma once

#include <QString>

/// The application's settings, as the adjustment widgets and the programs see them.
///
/// Values are kept through QSettings under the application's organisation and name; a setting that was
/// never written answers with its fallback. Call from the GUI thread.
namespace KVApplication {

/// Ids of the settings that have a key of their own; GetName() gives the key.
enum SettingId
{
    HidePreviewSlider = 29, ///< bool: the before/after splitter of the document view is hidden
};

/// Key of the setting with the number `id`; an empty text for a number that no setting has.
QString GetName(int id);

/// The user's choice stored under `key`, or `fallback` where there is none.
bool GetUserValue(const QString& key, bool fallback);
void SetUserValue(const QString& key, bool value);

/// The devices that pictures may be adjusted on, as the user wrote it under the key "gpu/use": "off", "auto"
/// or "any"; "auto" where nothing was written.
QString GetGpuUse();
void SetGpuUse(const QString& use);

/// Milliseconds that an operation may take before its progress is shown. 0 or more.
int GetProgressTimeout();
/// Stores the time-out; a negative number counts as 0.
void SetProgressTimeout(int ms);

/// Folder that a file dialog opens in; the user's pictures folder until one was chosen.
QString GetPathOpen();
void SetPathOpen(const QString& path);

} // namespace KVApplication
