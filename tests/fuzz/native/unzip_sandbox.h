/* Included before each source of the unzip library: whatever takes a path or makes a handle goes by
   way of unpacking.cpp. The system's headers come first, so that they stay as they are. */
#ifndef UNZIP_SANDBOX_H
#define UNZIP_SANDBOX_H

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>
#include <utime.h>
#include <sys/ioctl.h>
#include <sys/param.h>
#include <sys/stat.h>
#include <sys/types.h>

int sandboxChmod(const char* path, mode_t mode);
int sandboxChown(const char* path, uid_t owner, gid_t group);
FILE* sandboxFopen(const char* path, const char* mode);
int sandboxLstat(const char* path, struct stat* about);
int sandboxMkdir(const char* path, mode_t mode);
int sandboxOpen(const char* path, int flags, ...);
DIR* sandboxOpendir(const char* path);
int sandboxRename(const char* from, const char* to);
void (*sandboxSignal(int number, void (*handler)(int)))(int);
int sandboxStat(const char* path, struct stat* about);
int sandboxSymlink(const char* target, const char* path);
int sandboxUnlink(const char* path);
int sandboxUtime(const char* path, const struct utimbuf* times);

#define chmod(path, mode) sandboxChmod(path, mode)
#define chown(path, owner, group) sandboxChown(path, owner, group)
#define lchown(path, owner, group) sandboxChown(path, owner, group)
#define fopen(path, mode) sandboxFopen(path, mode)
#define lstat(path, about) sandboxLstat(path, about)
#define mkdir(path, mode) sandboxMkdir(path, mode)
#define open(...) sandboxOpen(__VA_ARGS__)
#define opendir(path) sandboxOpendir(path)
#define rename(from, to) sandboxRename(from, to)
#define signal(number, handler) sandboxSignal(number, handler)
#define stat(path, about) sandboxStat(path, about)
#define symlink(target, path) sandboxSymlink(target, path)
#define unlink(path) sandboxUnlink(path)
#define utime(path, times) sandboxUtime(path, times)

#endif
