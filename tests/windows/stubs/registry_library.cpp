// A stand-in for the driver package's registry library, for tests on Windows: its exports have the
// shapes of the system's registry functions and hand on to them. They are known by their ordinals
// alone (registry_library.def).
#include <windows.h>

extern "C" {

LSTATUS CreateKey(HKEY parent, LPCWSTR subKey, DWORD reserved, LPWSTR keyClass, DWORD options,
                  REGSAM access, const SECURITY_ATTRIBUTES* security, PHKEY key,
                  LPDWORD disposition) {
  return RegCreateKeyExW(parent, subKey, reserved, keyClass, options, access,
                         const_cast<SECURITY_ATTRIBUTES*>(security), key, disposition);
}

LSTATUS OpenKey(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM access, PHKEY key) {
  return RegOpenKeyExW(parent, subKey, options, access, key);
}

LSTATUS DeleteKey(HKEY parent, LPCWSTR subKey) { return RegDeleteKeyW(parent, subKey); }

LSTATUS CloseKey(HKEY key) { return RegCloseKey(key); }

LSTATUS EnumKey(HKEY key, DWORD index, LPWSTR name, LPDWORD chars, LPDWORD reserved,
                LPWSTR keyClass, LPDWORD classChars, PFILETIME time) {
  return RegEnumKeyExW(key, index, name, chars, reserved, keyClass, classChars, time);
}

LSTATUS QueryValue(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                   LPDWORD bytes) {
  return RegQueryValueExW(key, name, reserved, type, data, bytes);
}

LSTATUS DeleteValue(HKEY key, LPCWSTR name) { return RegDeleteValueW(key, name); }

LSTATUS SetValue(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                 DWORD bytes) {
  return RegSetValueExW(key, name, reserved, type, data, bytes);
}

LSTATUS EnumValue(HKEY key, DWORD index, LPWSTR name, LPDWORD chars, LPDWORD reserved, LPDWORD type,
                  LPBYTE data, LPDWORD bytes) {
  return RegEnumValueW(key, index, name, chars, reserved, type, data, bytes);
}

LSTATUS QueryInfo(HKEY key, LPWSTR keyClass, LPDWORD classChars, LPDWORD reserved, LPDWORD subKeys,
                  LPDWORD longestSubKey, LPDWORD longestClass, LPDWORD values,
                  LPDWORD longestValueName, LPDWORD mostValueBytes, LPDWORD securityBytes,
                  PFILETIME time) {
  return RegQueryInfoKeyW(key, keyClass, classChars, reserved, subKeys, longestSubKey, longestClass,
                          values, longestValueName, mostValueBytes, securityBytes, time);
}

LONG Unknown(LONG /*number*/) { return 0; }

}  // extern "C"
