/* SPDX-License-Identifier: MIT */
/* A host in C: converts a model and applies final settings to its package.
 *   host MODEL.fbx PACKAGE.czp     paths in UTF-8 */
#include <stdio.h>

#include "fbx_to_ts3d.h"

/* What the callbacks need of the host comes back as their first argument. */
struct Host {
  int percent;
};

static void FBX_TO_TS3D_CALL OnLine(void* context, const char* line) {
  (void)context;
  /* Errors and coded warnings; all other lines tell what is being done. */
  if (line[0] == '>' || line[0] == '*') printf("%s\n", line);
}

/* A host with a window asks here whether somebody wants to cancel. */
static int32_t FBX_TO_TS3D_CALL OnProgress(void* context, double fraction) {
  struct Host* host = context;
  const int percent = (int)(100 * fraction);
  if (percent / 25 > host->percent / 25) printf("%d %%\n", percent);
  host->percent = percent;
  return 0;
}

int main(int argc, char** argv) {
  struct Host host = {0};
  FbxToTs3dOptions options = {0};
  FbxToTs3dFinalSettings settings = {0};
  FbxToTs3dConverter* converter;
  int32_t result;
  if (argc != 3) {
    fprintf(stderr, "usage: host MODEL.fbx PACKAGE.czp\n");
    return 64;
  }
  options.size = sizeof options;
  settings.size = sizeof settings;
  converter = FbxToTs3dCreate();
  options.repairs = FBX_TO_TS3D_REPAIR_AS_NEEDED;
  options.context = &host;
  options.onLine = OnLine;
  options.onProgress = OnProgress;
  result = FbxToTs3dSetOptions(converter, &options);
  if (result == FBX_TO_TS3D_OK) result = FbxToTs3dConvert(converter, argv[1], argv[2]);
  if (result == FBX_TO_TS3D_OK) {
    settings.scalePercent = 95.0f;
    settings.rotationY = 180;
    settings.boneRenames = "L_femur=left femur";
    settings.meshes = "hat=~Cap|hat_a=~Cap band";
    result = FbxToTs3dFinish(converter, argv[2], &settings);
  }
  if (result != FBX_TO_TS3D_OK) fprintf(stderr, "host: %s\n", FbxToTs3dErrorText(converter));
  FbxToTs3dDestroy(converter);
  printf("finished with result %d\n", (int)result);
  return result < 0 ? 1 : (int)result;
}
