// A lamp: opaque core with an additive halo, its depth tilted along the plane of its base.
flat in vec3 v_color;
flat in vec4 v_shape;
flat in vec3 v_tilt;

void main() {
    vec2 at = vec2(gl_PointCoord.x, 1.0 - gl_PointCoord.y) * 2.0 - 1.0;
    float share = length(at);
    float radius = share * v_shape.x;
    float core = 1.0 - smoothstep(0.7 * v_shape.y - 0.7, 1.2 * v_shape.y + 0.7, radius);
    float rim = max(1.0 - share, 0.0);
    float halo = rim * rim * v_shape.w / (1.0 + radius / v_shape.y);
    vec3 hot = mix(v_color, vec3(1.0), 0.6 * v_shape.w * core);
    // The core hides the background; the halo is glare in the eye and is added.
    core *= v_shape.z;
    gl_FragColor = vec4(hot * core + v_color * halo, core);
    gl_FragDepth = gl_FragCoord.z + clamp(dot(v_tilt.xy, at * v_shape.x), 0.0, v_tilt.z);
}
