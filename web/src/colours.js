// SPDX-License-Identifier: MIT

/** @returns a colour of the screen ("#rrggbb", or three numbers from 0 to 1) in amounts of light, as shading counts */
export const toLight = (...colour) => new THREE.Color(...colour).convertSRGBToLinear();
