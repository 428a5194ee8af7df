// Heap, files, INI files, environment, modules, objects and the machine's identity (winbase.h and its parts). Strings
// are NUL-terminated; buffer sizes are in characters unless a comment says bytes.
#pragma once

#include <windef.h>

// --- Errors ---------------------------------------------------------------------------------------------------------

extern "C" {
DWORD WINAPI GetLastError();
void WINAPI SetLastError(DWORD error);
}

// --- Heap -----------------------------------------------------------------------------------------------------------

#define HEAP_ZERO_MEMORY 0x00000008

extern "C" {
HANDLE WINAPI GetProcessHeap();
LPVOID WINAPI HeapAlloc(HANDLE heap, DWORD flags, SIZE_T bytes);
BOOL WINAPI HeapFree(HANDLE heap, DWORD flags, LPVOID memory);
// (SIZE_T)-1 for what is no block of the heap.
SIZE_T WINAPI HeapSize(HANDLE heap, DWORD flags, LPCVOID memory);
// Of what the clipboard gives; there is no other global memory.
LPVOID WINAPI GlobalLock(HGLOBAL memory);
BOOL WINAPI GlobalUnlock(HGLOBAL memory);
SIZE_T WINAPI GlobalSize(HGLOBAL memory);
}

// --- Files ----------------------------------------------------------------------------------------------------------

#define FILE_READ_DATA 0x0001
#define FILE_WRITE_DATA 0x0002
#define FILE_APPEND_DATA 0x0004
#define FILE_EXECUTE 0x0020
#define FILE_READ_ATTRIBUTES 0x0080
#define FILE_SHARE_READ 0x00000001
#define FILE_SHARE_WRITE 0x00000002
#define FILE_SHARE_DELETE 0x00000004
#define CREATE_NEW 1
#define CREATE_ALWAYS 2
#define OPEN_EXISTING 3
#define OPEN_ALWAYS 4
#define TRUNCATE_EXISTING 5
#define FILE_ATTRIBUTE_READONLY 0x00000001
#define FILE_ATTRIBUTE_HIDDEN 0x00000002
#define FILE_ATTRIBUTE_DIRECTORY 0x00000010
#define FILE_ATTRIBUTE_ARCHIVE 0x00000020
#define FILE_ATTRIBUTE_NORMAL 0x00000080
#define FILE_ATTRIBUTE_TEMPORARY 0x00000100
#define FILE_FLAG_WRITE_THROUGH 0x80000000u
#define FILE_FLAG_OVERLAPPED 0x40000000
#define FILE_FLAG_RANDOM_ACCESS 0x10000000
#define FILE_FLAG_SEQUENTIAL_SCAN 0x08000000
#define FILE_FLAG_DELETE_ON_CLOSE 0x04000000
#define FILE_FLAG_BACKUP_SEMANTICS 0x02000000
#define FILE_BEGIN 0
#define FILE_CURRENT 1
#define FILE_END 2
#define INVALID_FILE_SIZE (static_cast<DWORD>(0xFFFFFFFF))
#define INVALID_SET_FILE_POINTER (static_cast<DWORD>(-1))
#define INVALID_FILE_ATTRIBUTES (static_cast<DWORD>(-1))
#define MOVEFILE_REPLACE_EXISTING 0x00000001
#define MOVEFILE_COPY_ALLOWED 0x00000002
#define MOVEFILE_WRITE_THROUGH 0x00000008

struct SECURITY_ATTRIBUTES {
    DWORD nLength;
    LPVOID lpSecurityDescriptor;
    BOOL bInheritHandle;
};
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;

struct OVERLAPPED;  // only null pointers of it are passed: reads and writes end before the call returns
using LPOVERLAPPED = OVERLAPPED*;

struct WIN32_FIND_DATAW {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0;
    DWORD dwReserved1;
    WCHAR cFileName[MAX_PATH];
    WCHAR cAlternateFileName[14];  // 8.3 name; empty where cFileName is one itself
};
using LPWIN32_FIND_DATAW = WIN32_FIND_DATAW*;
static_assert(sizeof(WIN32_FIND_DATAW) == 592);

extern "C" {
HANDLE WINAPI CreateFileW(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD disposition,
                          DWORD flagsAndAttributes, HANDLE templateFile);
BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD bytes, LPDWORD bytesRead, LPOVERLAPPED overlapped);
BOOL WINAPI WriteFile(HANDLE file, LPCVOID buffer, DWORD bytes, LPDWORD bytesWritten, LPOVERLAPPED overlapped);
DWORD WINAPI SetFilePointer(HANDLE file, LONG distance, PLONG distanceHigh, DWORD method);
BOOL WINAPI SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER newPointer, DWORD method);
DWORD WINAPI GetFileSize(HANDLE file, LPDWORD sizeHigh);
BOOL WINAPI GetFileSizeEx(HANDLE file, PLARGE_INTEGER size);
BOOL WINAPI CloseHandle(HANDLE object);
DWORD WINAPI GetFileAttributesW(LPCWSTR name);
BOOL WINAPI SetFileAttributesW(LPCWSTR name, DWORD attributes);
BOOL WINAPI CreateDirectoryW(LPCWSTR name, LPSECURITY_ATTRIBUTES security);
BOOL WINAPI DeleteFileW(LPCWSTR name);
BOOL WINAPI MoveFileExW(LPCWSTR from, LPCWSTR to, DWORD flags);
BOOL WINAPI CopyFileW(LPCWSTR from, LPCWSTR to, BOOL failIfExists);
HANDLE WINAPI FindFirstFileW(LPCWSTR pattern, LPWIN32_FIND_DATAW found);
BOOL WINAPI FindNextFileW(HANDLE search, LPWIN32_FIND_DATAW found);
BOOL WINAPI FindClose(HANDLE search);
BOOL WINAPI SetCurrentDirectoryW(LPCWSTR name);
}

// --- INI files ------------------------------------------------------------------------------------------------------

extern "C" {
DWORD WINAPI GetPrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR fallback, LPWSTR buffer, DWORD size,
                                      LPCWSTR file);
UINT WINAPI GetPrivateProfileIntW(LPCWSTR section, LPCWSTR key, INT fallback, LPCWSTR file);
DWORD WINAPI GetPrivateProfileSectionW(LPCWSTR section, LPWSTR buffer, DWORD size, LPCWSTR file);
BOOL WINAPI WritePrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR value, LPCWSTR file);
DWORD WINAPI GetProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR fallback, LPWSTR buffer, DWORD size);
UINT WINAPI GetProfileIntW(LPCWSTR section, LPCWSTR key, INT fallback);
}

// --- Environment, identity, time ------------------------------------------------------------------------------------

#define MAX_COMPUTERNAME_LENGTH 15
#define VER_PLATFORM_WIN32_NT 2

struct OSVERSIONINFOW {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    WCHAR szCSDVersion[128];
};
using LPOSVERSIONINFOW = OSVERSIONINFOW*;
static_assert(sizeof(OSVERSIONINFOW) == 276);

extern "C" {
DWORD WINAPI GetEnvironmentVariableW(LPCWSTR name, LPWSTR buffer, DWORD size);
BOOL WINAPI SetEnvironmentVariableW(LPCWSTR name, LPCWSTR value);
BOOL WINAPI GetComputerNameW(LPWSTR buffer, LPDWORD size);
BOOL WINAPI GetVersionExW(LPOSVERSIONINFOW version);
DWORD WINAPI GetTickCount();
DWORD WINAPI GetCurrentThreadId();
}

// --- Modules and resources ------------------------------------------------------------------------------------------

#define DLL_PROCESS_DETACH 0
#define DLL_PROCESS_ATTACH 1
#define DLL_THREAD_ATTACH 2
#define DLL_THREAD_DETACH 3

extern "C" {
HMODULE WINAPI LoadLibraryW(LPCWSTR name);
HMODULE WINAPI LoadLibraryA(LPCSTR name);
BOOL WINAPI FreeLibrary(HMODULE module);
// `name`: a name, or an ordinal in its low word. A library of this host exports ordinal N as the symbol "OrdinalN".
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name);
HMODULE WINAPI GetModuleHandleW(LPCWSTR name);
HRSRC WINAPI FindResourceW(HMODULE module, LPCWSTR name, LPCWSTR type);
HGLOBAL WINAPI LoadResource(HMODULE module, HRSRC resource);
LPVOID WINAPI LockResource(HGLOBAL resource);
DWORD WINAPI SizeofResource(HMODULE module, HRSRC resource);
}

// --- Events, semaphores, programs -----------------------------------------------------------------------------------

#define INFINITE 0xFFFFFFFF
#define WAIT_OBJECT_0 0
#define WAIT_TIMEOUT 258
#define WAIT_FAILED (static_cast<DWORD>(0xFFFFFFFF))
#define EVENT_MODIFY_STATE 0x0002
#define EVENT_ALL_ACCESS 0x1F0003
#define SEMAPHORE_MODIFY_STATE 0x0002
#define SEMAPHORE_ALL_ACCESS 0x1F0003

extern "C" {
HANDLE WINAPI CreateSemaphoreW(LPSECURITY_ATTRIBUTES security, LONG initialCount, LONG maximumCount, LPCWSTR name);
HANDLE WINAPI OpenSemaphoreW(DWORD access, BOOL inherit, LPCWSTR name);
HANDLE WINAPI CreateEventW(LPSECURITY_ATTRIBUTES security, BOOL manualReset, BOOL initialState, LPCWSTR name);
HANDLE WINAPI OpenEventW(DWORD access, BOOL inherit, LPCWSTR name);
BOOL WINAPI SetEvent(HANDLE event);
DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD milliseconds);
// Above 31: started; otherwise an error number.
UINT WINAPI WinExec(LPCSTR commandLine, UINT show);
}

inline LONG InterlockedIncrement(volatile LONG* value) {
    return __atomic_add_fetch(value, 1, __ATOMIC_SEQ_CST);
}
inline LONG InterlockedDecrement(volatile LONG* value) {
    return __atomic_sub_fetch(value, 1, __ATOMIC_SEQ_CST);
}
