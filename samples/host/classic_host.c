/* SPDX-License-Identifier: MIT */
/* A host in C by the four functions ConvertFBXFile...: converts a model and applies final settings to it.
 *   classic_host FOLDER MODEL.fbx     afterwards FOLDER holds MODEL.czp and MODEL.xfg */
#include <stdio.h>
#include <string.h>

#include "fbx_to_ts3d.h"

#if defined(_WIN32)
#include <direct.h>
#define chdir _chdir
#define getcwd _getcwd
#else
#include <unistd.h>
#endif

/* Every mesh file of samples/scout.fbx, as the pass hides those that it is not given. The hat gets a switch. */
#define MESHES \
  "body=body|body_a=body_a|head=head|hat=~Cap|hat_a=~Cap band|backpack=backpack|backpack_a=backpack_a"

/* What the callbacks need of the host comes back as their first argument. */
struct Host {
  int problems;
};

static void FBX_TO_TS3D_CALL OnStatus(void* context, const char* text) {
  struct Host* host = context;
  if (strncmp(text, ">>>", 3) == 0) ++host->problems;
  printf("%s\n", text);
}

/* A host that can convert pictures writes the ".tga" file here and sets the flag. */
static void FBX_TO_TS3D_CALL OnTexture(void* context, const char* imagePath, uint8_t* converted) {
  (void)context;
  printf("%s: %s\n", imagePath, *converted ? "its .tga file is taken" : "has no .tga file");
}

/* The library splits paths at the backslash, on every system. */
static int MakePath(char* path, size_t size, const char* folder, const char* name) {
  const int length = snprintf(path, size, "%s\\%s", folder, name);
  if (length < 0 || (size_t)length >= size) return 0;
  for (; *path; ++path) {
    if (*path == '/') *path = '\\';
  }
  return 1;
}

int main(int argc, char** argv) {
  struct Host host = {0};
  char folder[2048], model[4096];
  int32_t vertices = 0, triangles = 0, result;
  if (argc != 3) {
    fprintf(stderr, "usage: classic_host FOLDER MODEL.fbx\n");
    return 64;
  }
  /* Work files are deleted from the current directory: it has to be the model's folder. */
  if (chdir(argv[1]) != 0 || !getcwd(folder, sizeof folder) ||
      !MakePath(model, sizeof model, folder, argv[2])) {
    fprintf(stderr, "classic_host: %s cannot be entered\n", argv[1]);
    return 1;
  }
  result =
      ConvertFBXFile3(model, 0.0f, 0, 0, 0, NULL, &vertices, &triangles, &host, OnStatus, OnTexture, 0, NULL);
  printf("converted with result %d: %d vertices, %d triangles, %d problems\n", (int)result, (int)vertices,
         (int)triangles, host.problems);
  if (result != FBX_TO_TS3D_OK) return (int)result;
  /* In the same process: the library remembers the skeleton and the actor type. The pass deletes the document
   * from the current directory; from another one it stays beside the package for the next change. */
  if (chdir("..") != 0) return 1;
  result = ConvertFBXFileFinish(model, 95.0f, 180, 0, "L_femur=left femur", MESHES, &host, OnStatus);
  printf("finished with result %d\n", (int)result);
  return (int)result;
}
