// A drop: a streak of rain, a hailstone or a snowflake.
in vec3 v_across;
in vec4 v_color;

void main() {
    vec2 at = vec2(v_across.x, max(abs(v_across.y) - v_across.z, 0.0));
    float inside = max(1.0 - dot(at, at), 0.0);
#ifdef RAIN
    float ends = 1.0 - abs(v_across.y) / (1.0 + v_across.z);  // a streak fades in and out
    inside *= min(2.0 * ends, 1.0);
#endif
#ifdef HAIL
    inside = min(3.0 * inside, 1.0);
#endif
    gl_FragColor = vec4(v_color.rgb, v_color.a * inside);
}
