// Shadows of the sun or moon around the eye.
#pragma import_defines(SHADOWS)
uniform mat4 u_shadow_matrix;  // from the eye's frame to shadow map coordinates
uniform sampler2DShadow u_shadow;

// Share of direct light: 1 lit, 0 in shadow.
float lightThere(vec3 position) {
#ifdef SHADOWS
    vec3 place = (u_shadow_matrix * vec4(position, 1.0)).xyz;
    vec3 inside = abs(place - 0.5);
    // Shadows fade out toward the map's edge.
    float edge = max(inside.x, inside.y) * 10.0 - 4.0;
    if (max(edge, inside.z + inside.z) > 0.99) return 1.0;
    return max(texture(u_shadow, place), edge);
#else
    return 1.0;
#endif
}
